#pragma once

// Resource and command identifiers of the whole program, in one place. Kept to plain #defines so that
// the resource compiler reads this header too. Each subsystem owns a range.

// Icons (app).
#define IDI_TESSALINE 1
#define IDI_PAUSED 2

// Version record.
#define VS_VERSION_INFO_ID 1

// changer: 1000-1999 (its menu and control ids are in changer/commands.h)
// The panel's image buttons.
#define IDI_PANEL_WEB 1001
#define IDI_PANEL_MANAGER 1002
#define IDI_PANEL_OPTIONS 1003
#define IDI_PANEL_REMOVE 1004
#define IDI_PANEL_DELETE 1005
// manager: 2000-2999 (manager/manager_ids.h)
// tracker: 3000-3999
// hotkey: 4000-4999
// display: 5000-5999 (the resolution submenu's items start at 5100)
#define IDM_RESOLUTION_FIRST 5100
#define IDM_RESOLUTION_LAST 5999
