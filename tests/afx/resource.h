/* Resources of the framework's tests. */
#define IDD_CONTROLS 100
#define IDD_PLAIN 101
#define IDD_SHOWN 102
#define IDR_FRAME 200
#define IDR_DIALOG_MENU 201
#define IDS_PROMPT 300

#define IDC_FIRST 1001
#define IDC_SECOND 1002
#define IDC_TEXT 1003
#define IDC_CHECK 1004
#define IDC_LIST 1005
#define IDC_COMBO 1006
#define IDC_SPLITTER 1007
#define IDC_BUTTON 1008
#define IDC_NUMBER 1009

#define ID_ONE 32771
#define ID_TWO 32772
#define ID_THREE 32773
#define ID_SHARED 4041
