#pragma once

/// What a launch message is: an error line, an ordinary line, or a transient status that replaces the last
/// one.
enum MsgType { MsgError = 0, MsgLine = 1, MsgStatus = 2 };
