#pragma once

#include <sys/types.h>

#include <string_view>

namespace quiravent::desktop {

/// Whether a thread of this process waits, in pthread_join(), for the end of one that has that
/// name. True as well where the system doesn't tell what a thread waits in.
bool waitsForEndOfThread(pid_t waiter, std::string_view name);

/// The number of the thread whose end is waited for in a system call, as a line of
/// /proc/PID/task/TID/syscall tells it; 0 when it is another call.
///
/// The C library's pthread_join() waits on the word that holds the joined thread's number until the
/// kernel clears it, and passes that number as the value which the word has to have. Another wait
/// may pass such a number by chance, hence the question for the thread's name.
pid_t joinedThread(std::string_view systemCall);

}  // namespace quiravent::desktop
