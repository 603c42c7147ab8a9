#pragma once

// Identifiers of the list manager (its range is 2000-2999). Plain #defines, so that the resource
// compiler reads this header too.

// Menu commands. The default orientations Center to Auto are consecutive in code order: id -
// IDM_DEFAULT_CENTER is the Orientation code. Fill, newer, has the id after the last command's.
#define IDM_NEW_LIST 2001
#define IDM_OPEN_LIST 2002
#define IDM_SAVE_LIST 2003
#define IDM_SAVE_AS 2004
#define IDM_SORT_LIST 2005
#define IDM_ASSOCIATE 2006
#define IDM_UNASSOCIATE 2007
#define IDM_ABOUT 2008
#define IDM_CLOSE 2009
#define IDM_CLOSE_WITHOUT_SAVE 2010
#define IDM_DEFAULT_CENTER 2011
#define IDM_DEFAULT_TILE 2012
#define IDM_DEFAULT_STRETCH 2013
#define IDM_DEFAULT_SCALE 2014
#define IDM_DEFAULT_AUTO 2015
#define IDM_CHECK_DUPLICATES 2016
#define IDM_AUTO_SORT_FOLDER 2017
#define IDM_CONTEXT_REMOVE 2018
#define IDM_CONTEXT_DELETE 2019
#define IDM_CONTEXT_SORT 2020
#define IDM_DEFAULT_FILL 2021

// Controls of frmManager.
#define IDC_LIST1 2100
#define IDC_COMMAND1 2101
#define IDC_BROWSE_FRAME 2102
#define IDC_DRIVE1 2103
#define IDC_DIR1 2104
#define IDC_FILE1 2105
#define IDC_FILE_COUNT 2106
#define IDC_ADD_FOLDER 2107
#define IDC_ADD_FILES 2108
#define IDC_CON_FRAME 2109
#define IDC_OR_TYPE 2110
#define IDC_REMOVE_FILE 2111
#define IDC_KILL_FILE 2112
#define IDC_ADD_OR_TYPE 2113
#define IDC_DUPE_CHECKING 2114
#define IDC_PREV_FRAME 2115
#define IDC_PREVIEW 2116
#define IDC_ALT_PREVIEW 2117
#define IDC_LABEL1 2118
#define IDC_LABEL2 2119
#define IDC_LABEL3 2120
#define IDC_FSIZE 2121
#define IDC_FDATE 2122
#define IDC_DIMENSIONS 2123
#define IDC_SCAN_DIR 2124
#define IDC_KERN 2125
#define IDC_LABEL4 2126

// The busy animation's timer.
#define IDT_ANIMATOR 2200

// Pictures of the image buttons and of the busy animation.
#define IDI_ADD_FOLDER 2300
#define IDI_ADD_FILES 2301
#define IDI_REMOVE_FILE 2302
#define IDI_KILL_FILE 2303
#define IDI_KERN 2304
