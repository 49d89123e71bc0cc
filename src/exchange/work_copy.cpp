#include "work_copy.h"

#include "basic/files.h"
#include "road_schema.h"
#include "tools/road_tables.h"

#include <cerrno>

namespace exchange {

namespace {

void letGo() {
    mdlTools::RoadLSect.reset();
    mdlTools::RoadDb.reset();
}

} // namespace

WorkCopy::WorkCopy(desktop::Desktop& desktop) : m_desktop(desktop) {}

WorkCopy::~WorkCopy() {
    remove();
}

void WorkCopy::open() {
    m_file.emplace(basic::readyCopy(desktop::programFile(m_desktop, "Rod.mdb"),
                                    m_desktop.programFolder() + "/Rodd.mdb"));
    mdlTools::RoadDb = dao::OpenDatabase(m_file->siblingPath(), roadConnect);
}

void WorkCopy::close() {
    mdlTools::RoadLSect.reset();
    mdlTools::RoadDb->Close();
    mdlTools::RoadDb.reset();
}

bool WorkCopy::placeAs(const std::string& path) const {
    try {
        files::Replacement road(path, files::Target::Name);
        road.copy(files::OpenFile(m_file->siblingPath(), files::OpenFor::Reading));
        road.commit(files::Sibling::Onto::Nothing);
        return true;
    } catch (const files::Error& error) {
        if (error.code() == EEXIST) return false;
        basic::raiseFileError(basic::FileAction::Copy, error.code(), path);
    }
}

void WorkCopy::remove() {
    if (!m_file) return;
    letGo();
    m_file.reset();
}

} // namespace exchange
