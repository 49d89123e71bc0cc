#include "runtime_error.h"

namespace basic {

std::string descriptionOf(int number) {
    switch (number) {
    case InvalidProcedureCall:
        return "Invalid procedure call or argument";
    case Overflow:
        return "Overflow";
    case OutOfMemory:
        return "Out of memory";
    case SubscriptOutOfRange:
        return "Subscript out of range";
    case DivisionByZero:
        return "Division by zero";
    case TypeMismatch:
        return "Type mismatch";
    case BadFileName:
        return "Bad file name or number";
    case FileNotFound:
        return "File not found";
    case FileAlreadyOpen:
        return "File already open";
    case DeviceIoError:
        return "Device I/O error";
    case FileAlreadyExists:
        return "File already exists";
    case DiskFull:
        return "Disk full";
    case InputPastEnd:
        return "Input past end of file";
    case PermissionDenied:
        return "Permission denied";
    case PathFileAccessError:
        return "Path/File access error";
    case PathNotFound:
        return "Path not found";
    default:
        return "Application-defined or object-defined error";
    }
}

std::string RuntimeError::told(std::string_view said) const {
    return m_path.empty() || m_path == said ? m_description : m_description + ": " + m_path;
}

} // namespace basic
