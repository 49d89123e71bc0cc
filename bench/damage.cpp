#include "inside.h"
#include "memory_disk.h"
#include "page_mutator.h"

#include "jet/check.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/schema_text.h"

#include <cstdio>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

// What a damaged file of a megabyte costs at most: time and memory to open it, read all rows by table and by
// index, check it, change every table and write it. Each file is worked on by a process of its own.
//
//     damage [FILES]

namespace {

using jet::Bytes;
using jet::ColumnType;

constexpr std::size_t megabyte = 1 << 20;
constexpr std::size_t sharedMemo = 300000;
constexpr std::uint8_t onePageMark = 0x40; // top byte of the length of a long value on one page

/// Rows of text, numbers and long values of every form, until the file is just below a megabyte.
Bytes richFile() {
    const jet::MemoryDisk disk;
    jet::Database db = disk.create();
    jet::Table table =
        db.createTable({.name = "T",
                        .columns = {{.name = "Id", .type = ColumnType::Long, .autonumber = true},
                                    {.name = "Chn", .type = ColumnType::Text, .size = 60},
                                    {.name = "Rem", .type = ColumnType::Memo},
                                    {.name = "Pic", .type = ColumnType::Ole}},
                        .indexes = {{.name = "Id", .columns = {{"Id"}}, .kind = jet::IndexKind::PrimaryKey},
                                    {.name = "Chn", .columns = {{"Chn"}, {"Id", false}}}}});
    table.insert({jet::Null{}, "first", std::string(sharedMemo / 2, 'M'), jet::Null{}});
    for (int i = 0; jet::Inside::pager(db).pageCount() < 250; ++i) {
        const auto memo = static_cast<std::size_t>(i % 40 == 0 ? 9000 : 100 + i % 90);
        table.insert({jet::Null{}, "01-" + std::to_string(i * 7919 % 9973), std::string(memo, 'm'),
                      Bytes(static_cast<std::size_t>(i % 30 == 0 ? 4000 : 0), 1)});
    }
    db.commit();
    return disk.content();
}

/// Every memo that fills a page of its own now refers to the one large memo.
Bytes sharedLongValue(Bytes content) {
    const auto referenceAt = [&content](std::size_t at) { return std::span(content).subspan(at, 12); };
    std::size_t large = 0;
    const auto lengthAt = [&content](std::size_t at) {
        return content[at] + 256U * content[at + 1] + 65536U * content[at + 2];
    };
    for (std::size_t at = 0; at + 12 < content.size() && large == 0; ++at)
        if (content[at + 3] == 0 && lengthAt(at) > sharedMemo / 2 - 1 && lengthAt(at) <= sharedMemo)
            large = at;
    int replaced = 0;
    for (std::size_t at = 0; at + 12 < content.size(); ++at)
        if (content[at + 3] == onePageMark && lengthAt(at) >= 100 && lengthAt(at) <= 400) {
            std::ranges::copy(referenceAt(large), referenceAt(at).begin());
            ++replaced;
        }
    std::printf("one long value for %d rows\n", replaced);
    return content;
}

template <typename Action>
void tolerant(Action action) {
    try {
        action();
    } catch (const jet::Error&) { // what damage may lead to
    }
}

void useEverything(const Bytes& content) {
    const jet::MemoryDisk disk(content);
    std::optional<jet::Database> db;
    tolerant([&] { db = disk.open(); });
    if (!db) return;
    tolerant([&] { (void)jet::check(*db); });
    tolerant([&] { (void)jet::schemaText(jet::schemaOf(*db)); });
    for (const std::string& name : db->allTableNames())
        tolerant([&] {
            const jet::Table table = db->table(name);
            tolerant([&] {
                for (jet::Cursor cursor = table.scan(); cursor.next();)
                    (void)cursor.row();
            });
            for (std::size_t i = 0; i < table.indexes().size(); ++i)
                tolerant([&] { (void)table.seekAll(static_cast<int>(i), {}); });
        });
    for (const std::string& name : db->tableNames()) {
        tolerant([&] {
            jet::Table table = db->table(name);
            for (int i = 0; i < 50; ++i) {
                jet::Row row(table.columns().size());
                for (std::size_t c = 0; c < row.size(); ++c)
                    if (table.columns()[c].type == ColumnType::Boolean) row[c] = false;
                table.insert(row);
            }
        });
        tolerant([&] { db->addColumn(name, {.name = "More"}); });
        tolerant([&] { db->table(name).clear(); });
    }
    tolerant([&] { db->commit(); });
}

struct Cost {
    double seconds = 0; ///< of processor time
    long kilobytes = 0;
};

Cost costOf(const Bytes& content) {
    const pid_t child = fork();
    if (child == 0) {
        useEverything(content);
        _exit(0);
    }
    int status = 0;
    rusage used{};
    if (child < 0 || wait4(child, &status, 0, &used) != child || status != 0) {
        std::fprintf(stderr, "a process did not end well\n");
        std::exit(1);
    }
    const auto seconds = [](timeval time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {seconds(used.ru_utime) + seconds(used.ru_stime), used.ru_maxrss};
}

void print(const char* what, Cost cost) {
    std::printf("%-32s %7.0f ms %6.1f MB\n", what, cost.seconds * 1000,
                static_cast<double>(cost.kilobytes) / 1024);
}

} // namespace

int main(int count, char** arguments) {
    const int files = count > 1 ? std::atoi(arguments[1]) : 2000;
    const Bytes sound = richFile();
    if (sound.size() > megabyte) return 1;
    std::printf("%zu bytes, %d damaged files\n", sound.size(), files);
    print("sound", costOf(sound));
    print("one long value for all rows", costOf(sharedLongValue(sound)));
    Cost worst;
    for (int i = 0; i < files; ++i) {
        Bytes content = sound;
        fuzz::damagePages(content, 4096, static_cast<unsigned>(i));
        const Cost cost = costOf(content);
        worst.seconds = std::max(worst.seconds, cost.seconds);
        worst.kilobytes = std::max(worst.kilobytes, cost.kilobytes);
    }
    print("worst of the damaged", worst);
}
