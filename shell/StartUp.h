// SPDX-License-Identifier: MIT
// Start-up of the tool.
#pragma once

// Attaches to the image window that the command line names, takes its input, builds and shows the tool window
// and runs the toolkit's main loop. Exits with status -1 after a dialogue when the command line is wrong, the
// window can't be attached or another tool has its input. Returns 0 when the main loop returns.
int runTool(int argc, char** argv);
