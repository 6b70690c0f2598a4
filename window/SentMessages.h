// Waiting on a thread that others send messages to.
#pragma once

#include <windows.h>

// Answers the message that this thread is handling with 0 ahead of time, when another thread has sent it and waits for
// the answer; nothing otherwise. To be called before this thread waits for one that may be the sender.
void ReplyToSender();

// Waits until the handle (may be null: none) is signalled, a message was sent to this thread, or the time is over.
// Serves what was sent; posted messages stay where they are. True: the handle is signalled. What was served may have
// done anything, closing the handle included: ask anew before the next wait.
bool WaitServingSentMessages(HANDLE handle, DWORD milliseconds);
