#include "reading_walk.h"

#include "basic/numbers.h"
#include "basic/strings.h"
#include "sheet/book.h"
#include "sheet/cells.h"
#include "sheet/sight.h"
#include "tools/chainage.h"

namespace exchange {

using sheet::cellValue;

namespace {

constexpr sheet::Colour white = sheet::rgb(255, 255, 255);

} // namespace

dao::Field& FieldsByName::operator[](const char* name) {
    // Mostly they are wanted in the same order again.
    for (std::size_t turn = 0; turn < m_found.size(); ++turn) {
        if (m_next >= m_found.size()) m_next = 0;
        if (m_found[m_next].first == name) return m_found[m_next++].second;
        ++m_next;
    }
    m_found.emplace_back(name, m_records.Fields(name));
    m_next = m_found.size();
    return m_found.back().second;
}

ReadingWalk::ReadingWalk(sheet::Book& book, dao::Recordset& cSect, dao::Recordset& lSect,
                         const ExportFrame& frame, WalkTally& tally)
    : m_grid(book.MSFG),
      m_notices(book.notices),
      m_cSect(cSect),
      m_lSect(lSect),
      m_cross(cSect),
      m_long(lSect),
      m_frame(frame),
      m_tally(tally),
      m_row(tally.row),
      m_walk(book.MSFG) {}

void ReadingWalk::run(const std::function<void(int rowsDone)>& chainageDone) {
    m_row = 1;
    while (m_row < m_grid.Rows()) {
        normaliseChainage();
        if (skipped()) {
            ++m_row;
            continue;
        }
        writeChainage();
        chainageDone(m_row);
    }
    m_row = 0;
}

void ReadingWalk::normaliseChainage() {
    const std::string& chainage = text(sheet::Chainage);
    if (chainage.empty() || chainage == "CP" || chainage.find('-') != std::string::npos) return;
    const std::string before = chainage;
    m_grid.setText(m_row, sheet::Chainage, mdlTools::ChainageText(basic::cSng(basic::val(before))));
    m_notices.addChange(m_grid, m_row, sheet::Chainage, before, sheet::Notice::Undo);
}

bool ReadingWalk::skipped() const {
    return !sheet::isGround(m_grid, m_row, sheet::transferRule);
}

void ReadingWalk::writeChainage() {
    const std::string chainage = text(sheet::Chainage);
    for (; m_row < m_grid.Rows(); ++m_row) {
        const std::string& current = text(sheet::Chainage);
        if (current == "CP") continue;
        if (current != chainage) return;
        if (!skipped()) writeReading();
    }
}

void ReadingWalk::writeReading() {
    const GroundReading& reading = m_walk.read(m_row);
    std::get<std::string>(m_sought[0]) = reading.chainage;
    std::get<std::string>(m_sought[1]).assign(1, reading.side);
    m_sought[2] = reading.offset;
    m_cSect.Seek("=", m_sought);
    if (!m_cSect.NoMatch()) {
        reject();
        return;
    }
    m_grid.setCellBackColor(m_row, sheet::Chainage, white);
    if (text(sheet::RLevel).empty()) {
        reject();
        return;
    }
    addCrossRecord(reading.chainage);
}

void ReadingWalk::reject() {
    m_grid.setCellBackColor(m_row, sheet::Chainage, sheet::dataError);
    ++m_tally.errors;
    m_tally.lowestMarked = m_row;
}

void ReadingWalk::addCrossRecord(const std::string& chainage) {
    m_cSect.AddNew();
    m_cross["Chn"].setValue(chainage);
    if (text(sheet::RLevel).empty()) throw MissingLevel{dao::toText(m_cross["Chn"].value())};
    m_cross["Grl"].setValue(cellValue(m_grid, m_row, sheet::RLevel));
    if (!text(sheet::Left).empty()) {
        m_cross["Side"].setValue("L");
        m_cross["Oft"].setValue(basic::val(text(sheet::Left)));
    }
    if (!text(sheet::Center).empty()) {
        m_cross["Side"].setValue("C");
        m_cross["Oft"].setValue(0.0);
        m_cross["Frl"].setValue(text(sheet::RLevel));
        addLongRecord(chainage);
    }
    if (!text(sheet::Right).empty()) {
        m_cross["Side"].setValue("R");
        m_cross["Oft"].setValue(basic::val(text(sheet::Right)));
    }
    m_cross["Rmk"].setValue("GG");
    m_cSect.Update();
    ++m_tally.records;
}

void ReadingWalk::addLongRecord(const std::string& chainage) {
    using basic::val;
    const ExportFrame& f = m_frame;
    const auto set = [this](const char* field, const auto& value) { m_long[field].setValue(value); };
    const std::string& level = text(sheet::RLevel);
    const double carriageWay = val(f.txtCrgWid.text) / 2;

    m_lSect.AddNew();
    set("Chn", chainage);
    set("Grl", level);
    set("Frl", level);
    set("LRW", val(f.txtLW.text));
    set("RRW", val(f.txtRW.text));
    set("RCam", 0.09);
    set("CSlp", val(f.cboCut.text));
    set("FSlp", val(f.cboFill.text));
    set("RGIS", val(f.cboGIS.text));
    set("DrnTWid", val(f.cboGIS.text)); // the road program wants the inner slope here, not the top width
    set("DrnWid", val(f.txtWDrn.text));
    set("RGW", val(f.txtWDrn.text));
    set("DrnDep", val(f.txtDDrn.text));
    set("RGD", val(f.txtDDrn.text));
    set("RGOS", val(f.cboGOS.text));
    set("LGOS", val(f.cboGOS.text));
    set("LG", dao::Value(true));
    set("RG", dao::Value(true));
    set("CamPer", 3.0);
    set("ShdPer", 5.0);
    set("TKPer", 1.0);
    set("LCamW", carriageWay);
    set("RCamW", carriageWay);
    m_lSect.Update();
}

} // namespace exchange
