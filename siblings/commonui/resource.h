// Ids of this library's resources, clear of those of the coherence library.
#pragma once

#define IDD_INPUT_STRING 5101
#define IDC_INPUT_STRING_TEXT 5102

#define IDD_RICH_INFO 5111
#define IDR_RICH_INFO_MENU 5112
#define IDC_RICH_INFO_TEXT 5113
#define ID_RICH_INFO_COPY 5114
#define ID_RICH_INFO_SELECT_ALL 5115
#define ID_RICH_INFO_CLOSE 5116
