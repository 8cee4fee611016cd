#pragma once

// Identifiers of the component's resources, read by the resource compiler too.

// A label that nobody looks up.
#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif

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
#define IDC_ERROR_DETAILS 1007

// About box
#define IDC_ABOUT_LOGO 1101
#define IDC_ABOUT_TITLE 1102
#define IDC_ABOUT_VERSION 1103
#define IDC_ABOUT_DESCRIPTION 1104

// What several value editors have
#define IDC_NAME 1201
#define IDC_TYPE 1202
#define IDC_NEW_VALUE 1203
#define IDC_CURRENT 1213

#define IDD_NUMERIC 202
#define IDC_MIN 1211
#define IDC_MAX 1212
#define IDC_UNIT 1214
#define IDC_INVALID 1215

#define IDD_TEXT 203
#define IDC_LENGTH 1221

#define IDD_ENUM 204
#define IDC_ENUM 1231

#define IDD_STRUCTURE 205
#define IDC_FIELDS 1241
#define IDC_EDIT_FIELD 1242

// Bit i of a bit field is IDC_BIT + i, its number IDC_BIT_NUMBER + i.
#define IDD_BITS 206
#define IDC_BIT_SUM 1251
#define IDC_BIT 1300
#define IDC_BIT_NUMBER 1320

#define IDD_RENAME 207
#define IDC_DEVICE_NAME 1261
