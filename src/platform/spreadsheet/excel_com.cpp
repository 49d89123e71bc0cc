#include "excel_com.h"

#ifdef _WIN32

#include <algorithm>
#include <utility>

#include <windows.h>

#include <oleauto.h>

namespace spreadsheet {

namespace {

constexpr LCID english = 0x0409; // numbers with a decimal point
constexpr long blockRows = 200;

struct ComFailure {
    HRESULT code;
};

void check(HRESULT code) {
    if (FAILED(code)) throw ComFailure{code};
}

/// COM for the time of one reading.
class Apartment {
  public:
    Apartment() { check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() { CoUninitialize(); }
};

/// A VARIANT that is cleared at the end of its life.
class Value {
  public:
    Value() { VariantInit(&m_value); }
    explicit Value(const wchar_t* text) : Value() {
        m_value.vt = VT_BSTR;
        m_value.bstrVal = SysAllocString(text);
    }
    explicit Value(bool truth) : Value() {
        m_value.vt = VT_BOOL;
        m_value.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
    }
    Value(Value&& other) noexcept : Value() { std::swap(m_value, other.m_value); }
    Value& operator=(Value&& other) noexcept {
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~Value() { VariantClear(&m_value); }

    [[nodiscard]] VARIANT* get() { return &m_value; }
    [[nodiscard]] const VARIANT& operator*() const { return m_value; }
    [[nodiscard]] IDispatch* object() const { return m_value.vt == VT_DISPATCH ? m_value.pdispVal : nullptr; }

  private:
    VARIANT m_value;
};

Value invoke(IDispatch* object, const wchar_t* name, WORD kind, Value* argument) {
    if (object == nullptr) throw Error(Failure::NotRunning, "Excel has no sheet open");
    std::wstring member = name;
    wchar_t* names = member.data();
    DISPID id = 0;
    check(object->GetIDsOfNames(IID_NULL, &names, 1, english, &id));
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{argument != nullptr ? argument->get() : nullptr, nullptr,
                          argument != nullptr ? 1U : 0U, 0};
    if (kind == DISPATCH_PROPERTYPUT) {
        parameters.rgdispidNamedArgs = &put;
        parameters.cNamedArgs = 1;
    }
    Value result;
    check(object->Invoke(id, IID_NULL, english, kind, &parameters, result.get(), nullptr, nullptr));
    return result;
}

Value get(IDispatch* object, const wchar_t* name) {
    return invoke(object, name, DISPATCH_PROPERTYGET, nullptr);
}

std::string utf8(const wchar_t* text, int length) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(std::max(size, 0)), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, length, result.data(), size, nullptr, nullptr);
    return result;
}

/// A cell's Value as text: dates in the user's own form, numbers with a point, errors as "Error 2007".
std::string textOf(Value& value) {
    const VARTYPE type = (*value).vt;
    if (type == VT_EMPTY || type == VT_NULL) return {};
    if (type == VT_ERROR) return "Error " + std::to_string((*value).scode & 0xFFFF);
    Value text;
    const LCID locale = type == VT_DATE ? LOCALE_USER_DEFAULT : english;
    check(VariantChangeTypeEx(text.get(), value.get(), locale, VARIANT_ALPHABOOL, VT_BSTR));
    return utf8((*text).bstrVal, static_cast<int>(SysStringLen((*text).bstrVal)));
}

/// The Excel that is running; nothing is ever started.
Value runningExcel() {
    CLSID id{};
    check(CLSIDFromProgID(L"Excel.Application", &id));
    IUnknown* running = nullptr;
    check(GetActiveObject(id, nullptr, &running));
    Value excel;
    excel.get()->vt = VT_DISPATCH;
    void* object = nullptr;
    const HRESULT found = running->QueryInterface(IID_IDispatch, &object);
    running->Release();
    check(found);
    excel.get()->pdispVal = static_cast<IDispatch*>(object);
    return excel;
}

/// Ten columns of sheet rows first .. last.
std::vector<Row> block(IDispatch* sheet, long first, long last) {
    Value address((L"A" + std::to_wstring(first) + L":J" + std::to_wstring(last)).c_str());
    const Value range = invoke(sheet, L"Range", DISPATCH_PROPERTYGET, &address);
    const Value values = get(range.object(), L"Value");
    if ((*values).vt != (VT_ARRAY | VT_VARIANT)) throw ComFailure{DISP_E_TYPEMISMATCH};
    std::vector<Row> rows(static_cast<std::size_t>(last - first + 1));
    for (long row = 0; row <= last - first; ++row) {
        for (long column = 0; column < columnCount; ++column) {
            long index[] = {row + 1, column + 1}; // counted from 1
            Value cell;
            check(SafeArrayGetElement((*values).parray, index, cell.get()));
            rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = textOf(cell);
        }
    }
    return rows;
}

bool isEmpty(const Row& row) {
    return std::ranges::all_of(row, [](const std::string& cell) { return cell.empty(); });
}

} // namespace

std::vector<Row> ExcelCom::readSheet(const GoOn& goOn) {
    try {
        const Apartment apartment;
        const Value excel = runningExcel();
        Value yes(true);
        static_cast<void>(invoke(excel.object(), L"Visible", DISPATCH_PROPERTYPUT, &yes));
        const Value sheet = get(excel.object(), L"ActiveSheet");
        const Value whole = get(sheet.object(), L"Rows");
        const Value count = get(whole.object(), L"Count");
        const long lastRow = (*count).lVal;
        std::vector<Row> rows;
        for (long first = 2; first <= lastRow; first += blockRows) {
            std::vector<Row> more = block(sheet.object(), first, std::min(first + blockRows - 1, lastRow));
            const auto end = std::ranges::find_if(more, isEmpty);
            rows.insert(rows.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(end));
            if (goOn && !goOn(rows.size())) throw Error(Failure::Cancelled, "Import cancelled");
            if (end != more.end()) break;
        }
        return rows;
    } catch (const ComFailure& failure) {
        if (failure.code == MK_E_UNAVAILABLE || failure.code == CO_E_CLASSSTRING)
            throw Error(Failure::NotRunning, "Excel is not running");
        throw Error(Failure::Lost, "Excel refused to be read");
    }
}

std::unique_ptr<RunningSpreadsheet> runningSpreadsheet() {
    return std::make_unique<ExcelCom>();
}

} // namespace spreadsheet

#endif
