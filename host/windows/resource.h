// Numbers shared by ondhost.rc and the code. Tests find the controls by them too.
#pragma once

#define IDI_HOST 1
#define IDD_MAIN 100
#define IDD_TRACE 103
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

#define IDC_TRACE_LIST 210
#define IDC_TRACE_CLEAR 211

// Commands. Buttons and menu items of the same command share its number.
#define IDM_CONNECT 300
#define IDM_EXIT 301
#define IDM_ABOUT 302
#define IDM_NO_TOOLS 303
#define IDM_TRACE 304
// The tools, in the order in which the module names them: that many numbers from here on.
#define IDM_FIRST_TOOL 400
#define OND_MOST_TOOLS 9
