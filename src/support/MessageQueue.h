#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

namespace quiravent {

/// What an event worker delivers to the script thread: what happened, and the detail as text.
struct Message {
    Message(std::string messageName, std::string messageData)
        : name(std::move(messageName)), data(std::move(messageData)) {}

    std::string name;
    std::string data;
};

/// Messages on their way from a pool thread to the script thread, without a bound.
class MessageQueue {
  public:
    /// Whether it was empty, so that the script thread is to be woken.
    bool Append(Message message);
    /// Empties the queue.
    std::deque<Message> TakeAll();

  private:
    std::mutex m_mutex;
    std::condition_variable m_condition;
    std::deque<Message> m_items;
};

}  // namespace quiravent
