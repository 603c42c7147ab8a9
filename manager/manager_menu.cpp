#include "manager/manager_menu.h"

#include "manager/manager_ids.h"

namespace tl {

const std::vector<MenuLine>& managerMenuBar() {
    static const std::vector<MenuLine> lines = {
        {0, "mnuList", "&List", 0},
        {1, "mnuNewList", "&New", IDM_NEW_LIST},
        {1, "mnuOpenList", "&Open...", IDM_OPEN_LIST},
        {1, "mnuS3", "-", 0},
        {1, "mnuSaveList", "&Save", IDM_SAVE_LIST},
        {1, "mnuSaveAs", "Save &As...", IDM_SAVE_AS},
        {1, "mnuS1", "-", 0},
        {1, "mnuSortList", "So&rt List", IDM_SORT_LIST},
        {1, "mnuFileAssociations", "File associations", 0},
        {2, "mnuAssociate", "&Associate with WALL files", IDM_ASSOCIATE},
        {2, "mnuFileUnassoc", "Un-associate", IDM_UNASSOCIATE},
        {1, "mnuAbout", "A&bout...", IDM_ABOUT},
        {1, "mnuS2", "-", 0},
        {1, "mnuClose", "Save and &close", IDM_CLOSE},
        {1, "mnuCloseWithoutSave", "Close without save", IDM_CLOSE_WITHOUT_SAVE},
        {0, "mnuOptions", "&Options", 0},
        {1, "mnuOptionsAddDefault", "Add &new files with this orientation", 0},
        {2, "mnuOptionsDefaultTypeCenter", "Centered", IDM_DEFAULT_CENTER},
        {2, "mnuOptionsDefaultTypeTile", "Tiled", IDM_DEFAULT_TILE},
        {2, "mnuOptionsDefaultTypeStretch", "Stretched", IDM_DEFAULT_STRETCH},
        {2, "mnuOptionsDefaultTypeScale", "Scaled", IDM_DEFAULT_SCALE},
        {2, "mnuOptionsDefaultTypeFill", "Filled", IDM_DEFAULT_FILL},
        {2, "mnuAddS1", "-", 0},
        {2, "mnuOptionsDefaultTypeAuto", "Auto", IDM_DEFAULT_AUTO},
        {1, "mnuOptionsCheckDuplicates", "&Check for duplicates", IDM_CHECK_DUPLICATES},
        {1, "mnuAutoSortFolder", "Auto &sort on folder insert", IDM_AUTO_SORT_FOLDER},
    };
    return lines;
}

const std::vector<MenuLine>& managerContextMenu() {
    static const std::vector<MenuLine> lines = {
        {0, "mnuContextRemoveFromList", "Remove from list", IDM_CONTEXT_REMOVE},
        {0, "mnuContextDelete", "Delete from disk", IDM_CONTEXT_DELETE},
        {0, "mnuContextS1", "-", 0},
        {0, "mnuContextSort", "Sort list", IDM_CONTEXT_SORT},
    };
    return lines;
}

}  // namespace tl
