#pragma once

#include <algorithm>
#include <string>

#include "Recorder.h"
#include "porting/pl_functions.h"

namespace quiravent::recorder {

/// One answer in the making: what a test prepared, and for the rest what the fake device says.
class Answer {
  public:
    explicit Answer(const Behaviour& behaviour) : m_behaviour(behaviour) {}

    int32_t status() const { return m_behaviour.status.value_or(m_status); }
    bool succeeds() const { return status() == 0; }

    /// The status unless a test prepared one.
    void fail(e_pl_status status) { m_status = status; }

    /// What a test prepared for the output; null where it did not.
    const Value* prepared(const char* name) const { return find(m_behaviour.outputs, name); }

    /// Writes a word of output: as prepared, else, on success, what makeDefault returns.
    template <class Word, class MakeDefault>
    void put(const char* name, Word* output, MakeDefault makeDefault) {
        if (!output) return;
        if (const Value* value = prepared(name)) {
            if (const auto* number = std::get_if<double>(value)) {
                *output = static_cast<Word>(static_cast<int64_t>(*number));
            }
        } else if (succeeds()) {
            *output = makeDefault();
        }
    }

    /// Writes an array of records and its count. `records`, when prepared, is a list of which no
    /// more is written than the array holds; `count`, when prepared, is told whatever was written.
    template <class Element, class FromValue>
    void putArray(const char* records, Element** array, uint32_t* count, FromValue fromValue) {
        const Value* value = prepared(records);
        const List& list = value ? value->list() : Value().list();
        const auto written = std::min<size_t>(list.size(), *count);
        std::transform(list.begin(), list.begin() + static_cast<ptrdiff_t>(written), *array,
                       fromValue);
        put("count", count, [&] { return static_cast<uint32_t>(written); });
    }

  private:
    const Behaviour& m_behaviour;
    int32_t m_status = e_pl_status_ok;
};

}  // namespace quiravent::recorder
