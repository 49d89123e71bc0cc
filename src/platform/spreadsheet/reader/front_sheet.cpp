#include "front_sheet.h"

#include <com/sun/star/awt/XWindow.hpp>
#include <com/sun/star/bridge/UnoUrlResolver.hpp>
#include <com/sun/star/connection/NoConnectException.hpp>
#include <com/sun/star/container/XEnumeration.hpp>
#include <com/sun/star/container/XEnumerationAccess.hpp>
#include <com/sun/star/frame/XController.hpp>
#include <com/sun/star/frame/XDesktop.hpp>
#include <com/sun/star/frame/XFrame.hpp>
#include <com/sun/star/frame/XModel.hpp>
#include <com/sun/star/lang/XMultiComponentFactory.hpp>
#include <com/sun/star/sheet/XSpreadsheetView.hpp>
#include <com/sun/star/util/XNumberFormatsSupplier.hpp>
#include <cppuhelper/bootstrap.hxx>
#include <rtl/bootstrap.hxx>

#include <chrono>
#include <thread>

namespace reader {

namespace frame = com::sun::star::frame;
namespace sheet = com::sun::star::sheet;
namespace uno = com::sun::star::uno;
namespace util = com::sun::star::util;
using com::sun::star::connection::NoConnectException;

namespace {

rtl::OUString unoText(const std::string& text) {
    return rtl::OStringToOUString(text.c_str(), RTL_TEXTENCODING_UTF8);
}

/// The spreadsheet view of a document, when it is a workbook with a window.
uno::Reference<sheet::XSpreadsheetView> viewOf(const uno::Reference<uno::XInterface>& document) {
    const uno::Reference<frame::XModel> model(document, uno::UNO_QUERY);
    if (!model.is()) return {}; // the start centre, the recovery dialog
    return uno::Reference<sheet::XSpreadsheetView>(model->getCurrentController(), uno::UNO_QUERY);
}

uno::Reference<sheet::XSpreadsheetView> firstView(const uno::Reference<frame::XDesktop>& desktop) {
    if (auto view = viewOf(desktop->getCurrentComponent()); view.is()) return view;
    const auto documents = desktop->getComponents()->createEnumeration();
    while (documents.is() && documents->hasMoreElements()) {
        const uno::Reference<uno::XInterface> document(documents->nextElement(), uno::UNO_QUERY);
        if (auto view = viewOf(document); view.is()) return view;
    }
    return {};
}

void makeVisible(const uno::Reference<frame::XController>& controller) {
    const auto window = controller->getFrame()->getContainerWindow();
    if (window.is()) window->setVisible(true);
}

} // namespace

uno::Reference<uno::XComponentContext> connect(const std::string& pipe, const std::string& programFolder) {
    // Without the office's own types the first reply that carries one of them ends in a fault of the bridge.
    rtl::Bootstrap::set("URE_MORE_TYPES", "file://" + unoText(programFolder) + "/types/offapi.rdb");
    const auto resolver =
        com::sun::star::bridge::UnoUrlResolver::create(cppu::defaultBootstrap_InitialComponentContext());
    const rtl::OUString address = "uno:pipe,name=" + unoText(pipe) + ";urp;StarOffice.ComponentContext";
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    for (;;) {
        try {
            return {resolver->resolve(address), uno::UNO_QUERY_THROW};
        } catch (const NoConnectException&) {
            if (std::chrono::steady_clock::now() >= end) throw;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

FrontSheet sheetInFront(const uno::Reference<uno::XComponentContext>& context) {
    const uno::Reference<frame::XDesktop> desktop(
        context->getServiceManager()->createInstanceWithContext("com.sun.star.frame.Desktop", context),
        uno::UNO_QUERY_THROW);
    const auto view = firstView(desktop);
    if (!view.is()) return {};
    const uno::Reference<frame::XController> controller(view, uno::UNO_QUERY_THROW);
    makeVisible(controller);
    const uno::Reference<util::XNumberFormatsSupplier> formats(controller->getModel(), uno::UNO_QUERY_THROW);
    return {view->getActiveSheet(), formats->getNumberFormats()};
}

} // namespace reader
