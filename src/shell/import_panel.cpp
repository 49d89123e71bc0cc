#include "import_panel.h"

#include "controls/flex_grid.h"
#include "frmGrl.h"
#include "import_wait.h"
#include "level_frame.h"
#include "table_frame.h"
#include "text.h"

#include "basic/files.h"
#include "tables/table_file.h"

#include <QAction>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

#include <utility>

namespace shell {
namespace {

constexpr std::size_t sampleBytes = 4096;

QString profileFile() {
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/zavrogrl");
    QDir().mkpath(folder);
    return folder + QStringLiteral("/import-columns");
}

/// The one local file of a drag; empty when it is anything else.
QString fileOf(const QMimeData* data) {
    if (data == nullptr || data->urls().size() != 1 || !data->urls().constFirst().isLocalFile()) return {};
    return data->urls().constFirst().toLocalFile();
}

class ImportPanel final : public QObject, public WindowPart {
  public:
    explicit ImportPanel(frmGrl& window) : m_window(window) {
        QMenu& menu = window.menu("mnuTools");
        QAction& item =
            window.addItem(menu, {"mnuImportFile", "Import from &file...", [this] { choose(); }, action});
        const auto after = menu.findChild<QAction*>(QStringLiteral("sep3"));
        menu.insertAction(after, &item); // behind "Import From Excel"
        window.setAcceptDrops(true);
        window.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        const bool isDrag = event->type() == QEvent::DragEnter || event->type() == QEvent::Drop;
        if (!isDrag || m_window.frameIsOpen()) return false;
        auto* drop = static_cast<QDropEvent*>(event); // also what QDragEnterEvent is made of
        const QString file = fileOf(drop->mimeData());
        if (file.isEmpty()) return false;
        drop->acceptProposedAction();
        // The other program waits for the end of the drop.
        if (event->type() == QEvent::Drop)
            QTimer::singleShot(0, this,
                               [this, file] { m_window.act(action, [this, file] { take(toUtf8(file)); }); });
        return true;
    }

  private:
    static constexpr Action action{.name = "Import", .walksGrid = false, .heldByFrames = true};

    void choose() {
        if (const auto file = m_window.desktop().fileDialog(desktop::FileDialog::Import, m_last)) take(*file);
    }

    void take(const std::string& file) {
        m_last = file;
        try {
            if (exchange::isLevelFile(basic::readFile(file, sampleBytes)))
                return lay(new LevelFrame(nameOf(file), exchange::readLevelFile(basic::readFile(file)),
                                          m_window.book().MSFG, m_window.centralWidget()));
            const auto read = [this, file](const std::optional<std::string>& sheet) {
                ImportWait wait(m_window, "Import from file", "Reading the file...");
                tables::ReadOptions options;
                options.sheet = sheet;
                options.readerProgram = m_window.desktop().tableReader();
                return tables::readTableFile(file, options,
                                             [&wait](std::size_t rows) { return wait.goOn(rows); });
            };
            lay(new TableFrame(nameOf(file), read({}), read, toUtf8(profileFile()), m_window.book().MSFG,
                               m_window.centralWidget()));
        } catch (const basic::RuntimeError& error) {
            refuse(file, error.told(file));
        } catch (const tables::Unreadable& error) {
            refuse(file, error.what());
        } catch (const spreadsheet::Error& error) {
            m_window.desktop().status(std::string(error.what()) + "; the book is as it was");
        }
    }

    void lay(ImportFrame* frame) {
        m_frame = frame;
        frame->cmdImport_Click = [this] { m_window.act({.name = "Import"}, [this] { import(); }); };
        frame->cmdCancel_Click = [this] { m_window.act({.name = "Cancel"}, [this] { close(); }); };
        m_window.layOver(frame);
        frame->giveFocus();
    }

    void import() {
        const auto done =
            exchange::importRows(m_window.book(), m_window.desktop(), m_frame->rows(), m_frame->place());
        if (done != project::Outcome::Done) return;
        try {
            m_frame->accepted();
        } catch (const basic::RuntimeError& error) {
            m_window.desktop().status("The columns could not be remembered: " + error.told());
        }
        close();
    }

    void close() {
        m_window.layOver(nullptr);
        std::exchange(m_frame, nullptr)->deleteLater(); // its own button is at work
    }

    void refuse(const std::string& file, const std::string& why) {
        m_window.desktop().messageBox(toUtf8(nameOf(file)) + ": " + why + "\nThe book is as it was.");
    }

    static QString nameOf(const std::string& file) { return QFileInfo(fromUtf8(file)).fileName(); }

    frmGrl& m_window;
    ImportFrame* m_frame = nullptr; // of the window, while it lies over the grid
    std::string m_last;
};

} // namespace

std::unique_ptr<WindowPart> makeImportPanel(frmGrl& window) {
    return std::make_unique<ImportPanel>(window);
}

} // namespace shell
