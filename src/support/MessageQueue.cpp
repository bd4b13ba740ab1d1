#include "MessageQueue.h"

namespace quiravent {

bool MessageQueue::Append(Message message) {
    bool isFirst = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        isFirst = m_items.empty();
        m_items.push_back(std::move(message));
    }
    m_condition.notify_all();
    return isFirst;
}

std::deque<Message> MessageQueue::TakeAll() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::deque<Message> taken;
    taken.swap(m_items);
    return taken;
}

}  // namespace quiravent
