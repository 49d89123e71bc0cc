#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace tables {

/// The parts of a packed file, by name.
class Parts {
  public:
    virtual ~Parts() = default;

    /// Gives the part's bytes to `take`, piece by piece, until it answers false; false when there is no such
    /// part. Raises Unreadable for a damaged or encrypted part.
    using Take = std::function<bool(std::string_view)>;
    virtual bool read(const std::string& name, const Take& take) = 0;
};

/// The zip file `path`. Names are found whatever their case. What is read of it, all in all, may not unpack
/// to more than 512 MB. Raises Unreadable when it is no whole zip file.
[[nodiscard]] std::unique_ptr<Parts> openZip(const std::string& path);

/// Parts in memory.
class MemoryParts : public Parts {
  public:
    explicit MemoryParts(std::map<std::string, std::string> parts) : m_parts(std::move(parts)) {}
    bool read(const std::string& name, const Take& take) override {
        const auto found = m_parts.find(name);
        if (found == m_parts.end()) return false;
        (void)take(found->second);
        return true;
    }

  private:
    std::map<std::string, std::string> m_parts;
};

} // namespace tables
