#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quiravent::test {

/// The pairs of lines of a file, between which empty lines don't count.
inline std::vector<std::pair<std::string, std::string>> pairsIn(const std::string& path) {
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        if (!line.empty()) lines.push_back(line);
    if (lines.empty() || lines.size() % 2 != 0) throw std::runtime_error("no pairs in " + path);
    std::vector<std::pair<std::string, std::string>> pairs;
    for (size_t at = 0; at < lines.size(); at += 2) pairs.emplace_back(lines[at], lines[at + 1]);
    return pairs;
}

}  // namespace quiravent::test
