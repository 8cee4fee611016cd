#pragma once

// Identifiers of the window: commands, controls and texts, read by the resource
// compiler too.

#define VIEW_CLASS L"TamViewFrame"
#define VIEW_SHEET_CLASS L"TamViewSheet"
#define VIEW_SPLITTER_CLASS L"TamViewSplitter"

#define IDI_VIEW 1
#define IDR_MENU 100
#define IDR_ACCELERATORS 101
#define IDR_LIST_MENU 102
// Keys that mean something else in a field.
#define IDR_LIST_ACCELERATORS 103
// Keys that mean something else in a field that is typed into.
#define IDR_UNDO_ACCELERATORS 104
// Keys of the lists that mean something else on the sheet.
#define IDR_COLUMN_ACCELERATORS 105

// Keys of the source that mean something else in the lists.
#define IDR_SOURCE_ACCELERATORS 106

// Parts of the window, children of the frame: GetDlgItem finds them.

#define IDC_TOOLBAR 1001
#define IDC_STATUS 1002
// The sheet. Its text is the words of the picked pin, or of the module.
#define IDC_SHEET 1003
// A tab control with a page for each list, in the order of the lists' identifiers.
#define IDC_PAGES 1004
// What is typed here filters the list that had the focus last.
#define IDC_FILTER 1005
#define IDC_FILTER_LABEL 1006
// One virtual list (report view) for each page; the current page's is visible.
#define IDC_ATTRIBUTES 1010
#define IDC_INPUTS 1011
#define IDC_OUTPUTS 1012
#define IDC_CATALOGUE 1013
// The field in which a cell of a list is typed; a child of the list, there while it lasts.
#define IDC_CELL 1014
// The words before it, of no size: a name for screen readers.
#define IDC_CELL_LABEL 1015
#define IDC_FINDINGS_TITLE 1020
#define IDC_FINDINGS 1021
#define IDC_SOURCE_TITLE 1022
// The text of the open file, read-only; its selection is where a finding is.
#define IDC_SOURCE 1023
// What is searched for in the source; shown while it is wanted.
#define IDC_SEARCH 1024
#define IDC_SEARCH_LABEL 1025
// Splitters between the sheet and the lists, these and the panes, and between the panes.
#define IDC_SPLIT_SHEET 1030
#define IDC_SPLIT_PANES 1031
#define IDC_SPLIT_SOURCE 1032
// Shown while something long runs.
#define IDC_PROGRESS 1040
#define IDC_STOP 1041
// The words before it, of no size: a name for screen readers.
#define IDC_PROGRESS_LABEL 1042

// Parts of the status line.
#define VIEW_STATUS_MESSAGE 0
#define VIEW_STATUS_SHOWN 1
#define VIEW_STATUS_UNSAVED 2
#define VIEW_STATUS_UNITS 3
#define VIEW_STATUS_ZOOM 4

// Columns of the lists of points, as subitems.
#define VIEW_COLUMN_NAME 0
#define VIEW_COLUMN_TYPE 1
#define VIEW_COLUMN_VALUE 2
#define VIEW_COLUMN_DISPLAYED 3
#define VIEW_COLUMN_UNIT 4
#define VIEW_COLUMN_DEFAULT 5
#define VIEW_COLUMN_ADDRESS 6
#define VIEW_COLUMN_VISIBLE 7

// Menu entries and keys.

#define IDM_FILE_OPEN 40001
#define IDM_FILE_RELOAD 40002
// Into the project that was named last; asks for one when none was.
#define IDM_FILE_SAVE 40003
#define IDM_FILE_SAVE_AS 40004
// The stream with the changed values, in a file of its own.
#define IDM_FILE_SAVE_STREAM 40005
#define IDM_FILE_EXPORT_IMAGE 40006
#define IDM_FILE_EXPORT_INTEROP 40007
#define IDM_FILE_EXPORT_SHEET 40008
#define IDM_FILE_EXPORT_PNG 40009
#define IDM_FILE_EXPORT_SVG 40010
#define IDM_FILE_EXIT 40011
#define IDM_FILE_CLOSE 40012
// What fell on the window while a file was loaded; the window tells itself.
#define IDM_FILE_OPEN_WAITING 40013
// Ten recent files from here on; where there are none, the first one is a greyed word.
#define IDM_FILE_RECENT 40020
#define IDM_FILE_RECENT_LAST 40029
// The modules of a project; in another file a greyed word.
#define IDM_FILE_MODULE 40030
#define IDM_FILE_MODULE_LAST 40099

#define IDM_EDIT_UNDO 40101
#define IDM_EDIT_REDO 40102
// The component's own editor of the picked attribute.
#define IDM_EDIT_VALUE 40103
// Typing the value in the list.
#define IDM_EDIT_CELL 40104
#define IDM_EDIT_COPY 40105
#define IDM_EDIT_FILTER 40106
#define IDM_EDIT_CLEAR_FILTER 40107
#define IDM_EDIT_SELECT_ALL 40108
// Shows the field of the words to search for; goes on to the next place of them and to the
// one before; hides the field.
#define IDM_EDIT_FIND 40109
#define IDM_EDIT_FIND_NEXT 40110
#define IDM_EDIT_FIND_PREVIOUS 40111
#define IDM_EDIT_FIND_END 40112

#define IDM_VIEW_ATTRIBUTES 40201
#define IDM_VIEW_INPUTS 40202
#define IDM_VIEW_OUTPUTS 40203
#define IDM_VIEW_CATALOGUE 40204
#define IDM_VIEW_SHEET 40205
#define IDM_VIEW_FINDINGS 40206
#define IDM_VIEW_SOURCE 40207
#define IDM_VIEW_ZOOM_IN 40208
#define IDM_VIEW_ZOOM_OUT 40209
#define IDM_VIEW_ZOOM_FIT 40210
#define IDM_VIEW_ZOOM_ACTUAL 40211
#define IDM_VIEW_SI 40212
#define IDM_VIEW_US 40213
// F6 and Shift+F6: the focus to the next part of the window and the one before.
#define IDM_VIEW_NEXT_PART 40214
#define IDM_VIEW_PREVIOUS_PART 40215
#define IDM_VIEW_NEXT_FINDING 40216
#define IDM_VIEW_PREVIOUS_FINDING 40217
#define IDM_VIEW_STOP 40218
// The focus to the list of the page.
#define IDM_VIEW_LIST 40219
// Fills the source's pane; the window tells itself.
#define IDM_VIEW_SHOW_SOURCE 40220

// The focus to a splitter, which the arrows move.
#define IDM_VIEW_NEXT_SPLITTER 40221
#define IDM_VIEW_PREVIOUS_SPLITTER 40222

// Sorting the list in focus: one for each of its columns.
#define IDM_VIEW_SORT 40230
#define IDM_VIEW_SORT_LAST 40237

// The widths of the columns of the list in focus.
#define IDM_VIEW_FIT_COLUMNS 40240
#define IDM_VIEW_NEXT_COLUMN 40241
#define IDM_VIEW_PREVIOUS_COLUMN 40242
#define IDM_VIEW_WIDER 40243
#define IDM_VIEW_NARROWER 40244

#define IDM_HELP_KEYS 40301
#define IDM_HELP_ABOUT 40302

// Texts. A %1 or %2 is replaced.

#define IDS_TITLE 2001
#define IDS_ABOUT 2002
#define IDS_TOOLBAR 2003
#define IDS_ATTRIBUTES 2004
#define IDS_INPUTS 2005
#define IDS_OUTPUTS 2006
#define IDS_CATALOGUE 2007
#define IDS_FILTER 2008
#define IDS_STOP 2009
#define IDS_COLUMN_NAME 2010
#define IDS_COLUMN_TYPE 2011
#define IDS_COLUMN_VALUE 2012
#define IDS_COLUMN_DISPLAYED 2013
#define IDS_COLUMN_UNIT 2014
#define IDS_COLUMN_DEFAULT 2015
#define IDS_COLUMN_ADDRESS 2016
#define IDS_COLUMN_VISIBLE 2017
#define IDS_COLUMN_NUMBER 2018
#define IDS_COLUMN_KIND 2019
#define IDS_COLUMN_LEAST 2020
#define IDS_COLUMN_GREATEST 2021
#define IDS_COLUMN_RESOLUTION 2022
#define IDS_COLUMN_INVALID 2023
#define IDS_COLUMN_WEIGHT 2024
#define IDS_COLUMN_PLACE 2025
#define IDS_COLUMN_MESSAGE 2026
#define IDS_COLUMN_RULE 2027
#define IDS_BOX 2028
#define IDS_ERROR 2029
#define IDS_WARNING 2030
#define IDS_NOTE 2031
#define IDS_FINDINGS 2032
#define IDS_NO_FINDINGS 2033
#define IDS_FINDINGS_COUNT 2034
#define IDS_SOURCE 2035
#define IDS_SOURCE_OF 2036
#define IDS_SOURCE_AT 2037
#define IDS_NO_SHEET 2038
#define IDS_SHEET_OF 2039
#define IDS_TOOL_OPEN 2040
#define IDS_TOOL_SAVE 2041
#define IDS_TOOL_UNDO 2042
#define IDS_TOOL_REDO 2043
#define IDS_TOOL_EDIT 2044
#define IDS_TOOL_ZOOM_IN 2045
#define IDS_TOOL_ZOOM_OUT 2046
#define IDS_TOOL_ZOOM_FIT 2047
#define IDS_TOOL_SI 2048
#define IDS_TOOL_US 2049
#define IDS_TOOL_FINDINGS 2050
#define IDS_TOOL_SOURCE 2051
#define IDS_SHOWN 2052
#define IDS_SHOWN_OF 2053
#define IDS_UNSAVED 2054
#define IDS_ALL_SAVED 2055
#define IDS_NOT_KEPT 2153
#define IDS_OPENS_NEXT 2154
#define IDS_START 2155
#define IDS_UNITS_SI 2056
#define IDS_UNITS_US 2057
#define IDS_NO_RECENT 2058
#define IDS_RECENT_GONE 2059
#define IDS_LOADING 2060
#define IDS_LOADED 2061
#define IDS_STOPPED 2062
#define IDS_NOT_LOADED 2063
#define IDS_NOT_READ 2064
#define IDS_LOAD_RULE 2065
#define IDS_READ_RULE 2066
#define IDS_ASK_SAVE 2067
#define IDS_CHANGED 2068
#define IDS_CHANGED_DIRTY 2069
#define IDS_REPLACE_MODULE 2151
#define IDS_RECOVER 2070
#define IDS_RECOVER_OTHER 2071
#define IDS_NOT_SAVED 2072
#define IDS_SAVED 2073
#define IDS_OUTPUT_HAS_NO_VALUE 2074
#define IDS_VALUE_REFUSED 2075
#define IDS_OPEN 2076
#define IDS_SAVE_PROJECT 2077
#define IDS_SAVE_STREAM 2078
#define IDS_EXPORT_IMAGE 2079
#define IDS_EXPORT_INTEROP 2080
#define IDS_EXPORT_SHEET 2081
#define IDS_EXPORT_PNG 2082
#define IDS_EXPORT_SVG 2083
#define IDS_FILTER_OPEN 2084
#define IDS_FILTER_PROJECT 2085
#define IDS_FILTER_STREAM 2086
#define IDS_FILTER_IMAGE 2087
#define IDS_FILTER_XML 2088
#define IDS_FILTER_HTML 2089
#define IDS_FILTER_PNG 2090
#define IDS_FILTER_SVG 2091
#define IDS_KEYS_1 2092
#define IDS_KEYS_2 2093
#define IDS_KEYS_3 2094
#define IDS_SPLIT_SHEET 2095
#define IDS_SPLIT_PANES 2096
#define IDS_SPLIT_SOURCE 2097
#define IDS_NOT_BROUGHT_BACK 2098
#define IDS_MORE_LEFT 2152
#define IDS_KEYS_4 2099
#define IDS_NOT_COPIED 2100
#define IDS_SORTED_UP 2101
#define IDS_SORTED_DOWN 2102
#define IDS_SORTED_AS_FILE 2103
#define IDS_WRITING 2104
#define IDS_MODULE 2121
#define IDS_NO_MODULES 2122
#define IDS_ONE_OF_MODULES 2123
#define IDS_NO_STREAM 2124
#define IDS_MORE_MODULES 2125
#define IDS_COLUMN_WIDTH 2126
#define IDS_COLUMNS_FIT 2127
#define IDS_OLDER_BOXES 2128
#define IDS_FILTER_FINDINGS 2129
#define IDS_FINDINGS_SHOWN 2130
#define IDS_SEARCH 2131
#define IDS_NOT_FOUND 2132
#define IDS_FOUND 2133
#define IDS_FOUND_FROM_START 2134
#define IDS_FOUND_FROM_END 2135
#define IDS_KEYS_5 2136
#define IDS_OTHER_FILE 2137
#define IDS_OTHER_FILES 2138
#define IDS_TITLE_OF 2139
#define IDS_TITLE_UNSAVED 2140
#define IDS_ENTRY 2141
#define IDS_ENTRY_WITHOUT_KEY 2142
#define IDS_SORT_ENTRY 2143
#define IDS_LOST_VALUE 2144
#define IDS_MORE_LOST 2145
#define IDS_SEPARATOR 2146
#define IDS_OPEN_PIN 2108
#define IDS_PAGES 2109
#define IDS_CELL_OF 2110
#define IDS_NO_SUCH_OUTPUT 2111
#define IDS_ROW_UNSAVED 2112
#define IDS_TYPE_NOT_TAKEN 2113
#define IDS_NO_PROJECT 2114
#define IDS_NOTHING_WRITTEN 2115
#define IDS_MADE_OF 2116
#define IDS_YES 2117
#define IDS_NO 2118
#define IDS_ZOOM 2119
#define IDS_TOO_LARGE 2120
