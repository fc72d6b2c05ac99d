// SPDX-License-Identifier: MIT
// Stand before the X library's own functions, so that tests can watch and disturb a program's talk with the
// server.
#pragma once

namespace servercalls {

extern bool refusePixmaps; // the server has no room for any
extern int answersAwaited; // so far: each is a round trip

} // namespace servercalls
