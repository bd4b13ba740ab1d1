#include "MessageQueue.h"

namespace quiravent {

void MessageQueue::Append(Message message) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_items.push_back(std::move(message));
    }
    m_condition.notify_all();
}

std::deque<Message> MessageQueue::TakeAll() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::deque<Message> taken;
    taken.swap(m_items);
    return taken;
}

}  // namespace quiravent
