#pragma once

#include "tests/desktop/DdeClient.h"
#include "tests/desktop/Desktop.h"
#include "tests/desktop/Input.h"
#include "tests/desktop/Pictures.h"
#include "tests/desktop/Program.h"
#include "tests/desktop/Registry.h"
#include "tests/desktop/Suite.h"

// Tools for tests of the real program: a suite folder with stand-ins, the user's settings, a
// started Marl with its windows and message boxes, a mouse, keys, the screen and a DDE client.
//
// Nothing sleeps for a fixed time: `WaitUntil` polls until something holds or the deadline has
// passed. Only processes that were started here are ended, by their own handle.
