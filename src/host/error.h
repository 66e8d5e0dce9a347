#pragma once
// An automation error: what a failing host or document call raises, and what the component's
// error blocks catch and report.
#include <stdexcept>
#include <string>
#include <typeinfo>

namespace host {

class Error : public std::runtime_error {
public:
    Error(long number, std::string description, std::string source = {})
        : std::runtime_error(description), number_(number), description_(std::move(description)),
          source_(std::move(source)) {}

    long Number() const { return number_; }
    const std::string& Description() const { return description_; }
    const std::string& Source() const { return source_; }

private:
    long number_;
    std::string description_;
    std::string source_;
};

// The run-time's own error numbers, with the descriptions it gives them.
namespace err {
inline constexpr long InvalidProcedureCall = 5;    // "Invalid procedure call or argument"
inline constexpr long Overflow = 6;                // "Overflow"
inline constexpr long SubscriptOutOfRange = 9;     // "Subscript out of range"
inline constexpr long TypeMismatch = 13;           // "Type mismatch"
inline constexpr long ObjectRequired = 424;        // "Object required"
inline constexpr long InvalidUseOfNull = 94;       // "Invalid use of Null"
inline constexpr long NoSuchProperty = 438;        // "Object doesn't support this property or method"
inline constexpr long DuplicateKey = 457;          // "This key is already associated with an element of this collection"
inline constexpr long ObjectVariableNotSet = 91;   // "Object variable or With block variable not set"
inline constexpr long ApplicationDefined = 1004;   // the application's refusals
}  // namespace err

[[noreturn]] void Raise(long number);  // raises with the run-time's own description
[[noreturn]] void Raise(long number, const std::string& description);

// Error 1004 "<member> is not available in this engine yet.": what an implementation raises for
// a member it has not built. The object model's members raise it by default, named after the class
// that declares them ("ChartArea.SetShadow"), so that an implementation writes only what it builds.
[[noreturn]] void Unavailable(const std::string& member);
[[noreturn]] void Unavailable(const std::type_info& declaring, const char* member);
template <class T>
[[noreturn]] void Unavailable(const T*, const char* member) {
    Unavailable(typeid(T), member);
}

}  // namespace host
