#pragma once

/// The named pipe on which other processes talk to the application. One write is one message: a
/// name and a value, separated by line feeds, at most 1024 bytes. It reaches the script as a custom
/// event; "serviceunselect" also takes the application out of the "overlay" state.
///
/// Two writes that meet in the pipe are one message, of which the second is lost, so writers leave
/// time between messages.
namespace quiravent {

/// Starts a thread that serves the pipe, which it makes if it is missing and never removes.
/// \return 0, or the error of the thread library
int StartServiceSelectorChannel();

/// Asks the thread to end and waits until it has, which it does when a byte reaches the pipe.
/// Returns at once if no thread was started, or if it has ended already.
void StopServiceSelectorChannel();

}  // namespace quiravent
