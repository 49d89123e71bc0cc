#include "work_copy.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "road_schema.h"
#include "tools/road_tables.h"

namespace exchange {

namespace {

constexpr int heldByAnother = 3045;

/// A copy that is not held was left over by a crash; nothing else about it matters.
void refuseIfHeld(const std::string& path) {
    if (!basic::fileExists(path)) return;
    try {
        (void)dao::OpenDatabase(path, roadConnect);
    } catch (const basic::RuntimeError& error) {
        if (error.number() == heldByAnother) throw;
    }
}

void letGo() {
    mdlTools::RoadLSect.reset();
    mdlTools::RoadDb.reset();
}

} // namespace

WorkCopy::WorkCopy(desktop::Desktop& desktop)
    : m_desktop(desktop), m_path(desktop.programFolder() + "/Rodd.mdb") {}

void WorkCopy::open() {
    const std::string blank = desktop::programFile(m_desktop, "Rod.mdb");
    refuseIfHeld(m_path);
    m_ours = true;
    basic::fileCopy(blank, m_path);
    mdlTools::RoadDb = dao::OpenDatabase(m_path, roadConnect);
}

void WorkCopy::close() {
    mdlTools::RoadLSect.reset();
    mdlTools::RoadDb->Close();
    mdlTools::RoadDb.reset();
}

void WorkCopy::remove() {
    if (!m_ours) return;
    letGo();
    m_ours = false;
    try {
        basic::kill(m_path);
    } catch (const basic::RuntimeError&) {
        // Not there, or in a folder that lets nothing be deleted: there was nothing of ours to delete then.
    }
}

} // namespace exchange
