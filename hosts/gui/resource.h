// Numbers that code and resources share: icon, menus and dialogs (below 100), commands (CMD_, from 100),
// controls (IDC_: of the main window from 1001, of the dialogs from 1101). Tests find commands and controls
// by them.
#pragma once

#define IDI_APPLICATION_ICON 1
#define IDR_MENU 2
#define IDR_ENTRY_MENU 3
#define IDR_ACCELERATORS 4
#define IDD_ADD 5
#define IDD_MOVE 6
#define IDD_COMMAND 7
#define IDR_PROGRAM_MENU 30
#define IDR_CHANGE_MENU 31
#define IDR_TEXT_MENU 32
#define IDR_TREE_MENU 33
#define IDD_KEYS 34

#define CMD_ENABLE 100
#define CMD_DISABLE 101
#define CMD_DELETE 102
#define CMD_ADD 103
#define CMD_MOVE 104
#define CMD_CHANGE_COMMAND 105
#define CMD_EXECUTE 106
#define CMD_SHOW_FILE 107
#define CMD_SHOW_LOCATION 108
#define CMD_REFRESH 109
#define CMD_ALL_LOCATIONS 110
#define CMD_EXPORT 111
#define CMD_COPY 112
#define CMD_COPY_PATH 113
#define CMD_SELECT_ALL 114
#define CMD_FIND 115
#define CMD_UNDO 116
#define CMD_REDO 117
#define CMD_UNDO_HISTORY 118
#define CMD_DEFAULT_PROGRAMS 119
#define CMD_RESTART_ELEVATED 120
#define CMD_ABOUT 121
#define CMD_EXIT 122
#define CMD_ENTRIES 123
#define CMD_NEXT_PANE 124
#define CMD_TOGGLE 125
#define CMD_PREVIOUS_PANE 126
#define CMD_SWITCH_OFF 127
#define CMD_SWITCH_ON 128
#define CMD_HIDE_VERIFIED 129
#define CMD_FILTER_NOT_STARTING 130
#define CMD_FILTER_MISSING 131
#define CMD_FILTER_UNSIGNED 132
#define CMD_FILTER_RISKY 133
#define CMD_CLEAR_FILTERS 134
#define CMD_SEARCH_EVERYWHERE 135
#define CMD_SHOW_ALL 136
#define CMD_KEYS 170
#define CMD_DETAILS 171
#define CMD_PARTS 172

#define IDC_TREE 1001
#define IDC_SEARCH 1002
#define IDC_ENTRIES 1003
#define IDC_DETAILS 1004
#define IDC_STATUS 1005
#define IDC_TOOLBAR 1006
#define IDC_PROGRAMS 1007
#define IDC_CHECKPOINTS 1008
#define IDC_STEPS 1009
#define IDC_HEADING 1010
#define IDC_BANNER 1011
#define IDC_EMPTY_NOTE 1012

#define IDC_LOCATION 1101
#define IDC_NAME 1102
#define IDC_COMMAND 1103
#define IDC_BROWSE 1104
#define IDC_PROMPT 1105
#define IDC_KEYS 1130
