/* Numbers of the pictures in the program's resources (RCDATA, PNG). Read by the resource compiler
   and by C++. Pictures come at 96 dots an inch and, as _144 and _192, at those. */
#pragma once

#define MARL_PICTURE_SPLASH 200
#define MARL_PICTURE_SPLASH_144 201
#define MARL_PICTURE_ABOUT 202
#define MARL_PICTURE_ABOUT_144 203
#define MARL_PICTURE_SPLASH_192 204
#define MARL_PICTURE_ABOUT_192 205

/* Pictures in a row of each strip: one for each button. */
#define MARL_STRIP_PICTURES 18

/* The strips of the icon sets, the dull row above the bright one: the number of set
   N in size K (0: 48 pixels, 1: 72, 2: 96) is MARL_PICTURE_SET0_48 + N * 3 + K. */
#define MARL_PICTURE_SET0_48 210
#define MARL_PICTURE_SET0_72 211
#define MARL_PICTURE_SET0_96 212
#define MARL_PICTURE_SET1_48 213
#define MARL_PICTURE_SET1_72 214
#define MARL_PICTURE_SET1_96 215
#define MARL_PICTURE_SET2_48 216
#define MARL_PICTURE_SET2_72 217
#define MARL_PICTURE_SET2_96 218
#define MARL_PICTURE_SET3_48 219
#define MARL_PICTURE_SET3_72 220
#define MARL_PICTURE_SET3_96 221

/* The strips of menu pictures, 16 and 24 pixels high. */
#define MARL_PICTURE_MENU_16 230
#define MARL_PICTURE_MENU_24 231

/* The program's icon in the icon library. */
#define MARL_ICON 117
