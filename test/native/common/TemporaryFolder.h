#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

/// A new folder that is gone, with all in it, at the end of the scope.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = std::filesystem::temp_directory_path() / "quiravent-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        m_path = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string operator/(const std::string& name) const { return m_path / name; }
    std::string path() const { return m_path; }

    /// Makes the file and returns its path.
    std::string write(const std::string& name, const std::vector<uint8_t>& bytes) const {
        std::string path = *this / name;
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        if (!file) throw std::runtime_error("cannot write " + path);
        return path;
    }

  private:
    std::filesystem::path m_path;
};
