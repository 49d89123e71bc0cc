#pragma once

#include "jet/database.h"

#include <memory>
#include <string_view>
#include <utility>

namespace jet {

/// A file in memory whose content outlives the database that was opened on it.
class SharedFile : public File {
  public:
    explicit SharedFile(std::shared_ptr<MemoryFile> file) : m_file(std::move(file)) {}
    std::uint64_t size() override { return m_file->size(); }
    void read(std::uint64_t offset, std::span<std::uint8_t> into) override { m_file->read(offset, into); }
    void beginReplace() override { m_file->beginReplace(); }
    void keep(std::uint64_t offset, std::uint64_t length) override { m_file->keep(offset, length); }
    void append(std::span<const std::uint8_t> bytes) override { m_file->append(bytes); }
    void finishReplace() override { m_file->finishReplace(); }
    void abandonReplace() noexcept override { m_file->abandonReplace(); }

  private:
    std::shared_ptr<MemoryFile> m_file;
};

/// A disk with one database file.
class MemoryDisk {
  public:
    explicit MemoryDisk(Bytes content = {}) : m_file(std::make_shared<MemoryFile>(std::move(content))) {}

    [[nodiscard]] Database create(const CreateOptions& options = {}) const {
        return Database::create(std::make_unique<SharedFile>(m_file), options);
    }
    [[nodiscard]] Database open(std::string_view password = {}, OpenMode mode = OpenMode::ReadWrite) const {
        return Database::open(std::make_unique<SharedFile>(m_file), password, mode);
    }
    [[nodiscard]] const Bytes& content() const { return m_file->content(); }

  private:
    std::shared_ptr<MemoryFile> m_file;
};

} // namespace jet
