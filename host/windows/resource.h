// Numbers shared by ondhost.rc and the code. Tests find the controls by them too.
#pragma once

#define IDI_HOST 1
#define IDD_MAIN 100
#define IDD_ROWS 103
#define IDR_MENU 101
#define IDR_ACCELERATORS 102

#define IDC_CHANNEL_GROUP 200
#define IDC_CHANNEL_TEXT 201
#define IDC_CHANNEL_FORMS 202
#define IDC_CHANNEL_DESCRIPTION 203
#define IDC_CHANNEL_CONFIGURATION 204
#define IDC_CHANNEL_STATE 205
#define IDC_TOOLS_GROUP 206
#define IDC_TOOLS_PROBLEM 207

#define IDC_USE_HOLDER 208
#define IDC_USE_TRAFFIC 209
#define IDC_USE_CALLS 220

// Of the windows "Trace" and "Log".
#define IDC_ROWS_LIST 210
#define IDC_ROWS_CLEAR 211
#define IDC_ROWS_FILTER 212
#define IDC_ROWS_FILTER_LABEL 213
#define IDC_ROWS_PAUSE 214
#define IDC_ROWS_COPY 215

// Commands. Buttons and menu items of the same command share its number.
#define IDM_CONNECT 300
#define IDM_EXIT 301
#define IDM_ABOUT 302
#define IDM_NO_TOOLS 303
#define IDM_TRACE 304
#define IDM_LOG 305
#define IDM_RESET_COUNTERS 306
#define IDM_RUN_SCRIPT 307
#define IDM_STOP_SCRIPT 308
#define IDM_NO_SCRIPTS 309
#define IDM_OPEN_SETTINGS 310
#define IDM_FORGET 311
// The scripts that were run lately, as many as are remembered.
#define IDM_FIRST_SCRIPT 320
#define OND_MOST_SCRIPTS 10
// The tools, in the order in which the module names them: that many numbers from here on.
#define IDM_FIRST_TOOL 400
#define OND_MOST_TOOLS 9
