#pragma once

#include <com/sun/star/sheet/XSpreadsheet.hpp>
#include <com/sun/star/uno/XComponentContext.hpp>
#include <com/sun/star/util/XNumberFormats.hpp>

#include <string>

namespace reader {

/// The context of the LibreOffice that listens on `pipe`, tried for a while since the pipe opens a moment
/// after it was asked for. Raises NoConnectException. `programFolder` holds that LibreOffice's types.
com::sun::star::uno::Reference<com::sun::star::uno::XComponentContext>
connect(const std::string& pipe, const std::string& programFolder);

struct FrontSheet {
    com::sun::star::uno::Reference<com::sun::star::sheet::XSpreadsheet>
        cells; ///< empty when no workbook is open
    com::sun::star::uno::Reference<com::sun::star::util::XNumberFormats> formats; ///< its workbook's
};

/// The active sheet of the workbook in front; with another document in front, of the first workbook that is
/// open. Its window is made visible.
FrontSheet
sheetInFront(const com::sun::star::uno::Reference<com::sun::star::uno::XComponentContext>& context);

} // namespace reader
