#pragma once

// Identifiers of the component's resources, read by the resource compiler too.

#define TAM_ICON_LOGO L"A_LOGO"

#define IDS_TITLE 101
#define IDS_POINT_SUMMARY 120

#define IDD_ERROR 200
#define IDD_ABOUT 201

// Error report
#define IDC_ERROR_LINE1 1001
#define IDC_ERROR_DESCRIPTION 1002
#define IDC_ERROR_ADVANCED 1003
#define IDC_ERROR_ADVANCED_INFO 1004
#define IDC_ERROR_TITLE 1005
#define IDC_ERROR_ICON 1006

// About box
#define IDC_ABOUT_LOGO 1101
#define IDC_ABOUT_TITLE 1102
#define IDC_ABOUT_VERSION 1103
#define IDC_ABOUT_DESCRIPTION 1104
