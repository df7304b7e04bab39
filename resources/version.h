/* The version of the program. Read by the resource compiler and by C++. */
#pragma once

#define MARL_VERSION_MAJOR 2007
#define MARL_VERSION_MINOR 3
#define MARL_VERSION_REVISION 7044
#define MARL_VERSION "2007 SP3 (Build 7044)"
