#include "parts.h"

#include "../table.h"

#include <vector>
#include <zip.h>

namespace tables {
namespace {

constexpr std::size_t mostUnpacked = std::size_t{512} << 20;

[[noreturn]] void damaged() {
    throw Unreadable("The file is damaged or cut off");
}

class Zip : public Parts {
  public:
    explicit Zip(const std::string& path) {
        int failed = 0;
        m_zip.reset(zip_open(path.c_str(), ZIP_RDONLY, &failed));
        if (!m_zip) damaged();
    }

    bool read(const std::string& name, const Take& take) override {
        const auto index = zip_name_locate(m_zip.get(), name.c_str(), ZIP_FL_NOCASE);
        if (index < 0) return false;
        zip_stat_t entry{};
        zip_stat_init(&entry);
        if (zip_stat_index(m_zip.get(), static_cast<zip_uint64_t>(index), 0, &entry) != 0) damaged();
        if (entry.encryption_method != ZIP_EM_NONE)
            throw Unreadable("The file is encrypted; save it without a password");
        const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> part(
            zip_fopen_index(m_zip.get(), static_cast<zip_uint64_t>(index), 0), &zip_fclose);
        if (!part) damaged();
        std::vector<char> buffer(std::size_t{64} << 10);
        for (;;) {
            const auto count = zip_fread(part.get(), buffer.data(), buffer.size());
            if (count < 0) damaged();
            if (count == 0) return true;
            m_unpacked += static_cast<std::size_t>(count);
            if (m_unpacked > mostUnpacked) throw Unreadable("The file unpacks to more than 512 MB");
            if (!take({buffer.data(), static_cast<std::size_t>(count)})) return true;
        }
    }

  private:
    std::unique_ptr<zip_t, void (*)(zip_t*)> m_zip{nullptr, &zip_discard};
    std::size_t m_unpacked = 0;
};

} // namespace

std::unique_ptr<Parts> openZip(const std::string& path) {
    return std::make_unique<Zip>(path);
}

} // namespace tables
