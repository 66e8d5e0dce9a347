#pragma once
// How the component's error blocks see an error: the run-time's error object of the exception
// being handled, statements run with errors ignored, and object variables that may be Nothing.
#include <exception>
#include <memory>
#include <string>

#include "host/error.h"

namespace ps {

struct ErrObject {
    long Number = 0;
    std::string Description;
    std::string Source;
};

// The error of the exception being handled; call it inside a catch block only.
ErrObject CurrentError();

// One statement of a stretch that runs with errors ignored: a failure skips it, the next one runs.
template <class F>
void IgnoreErrors(F&& statement) {
    try {
        statement();
    } catch (const std::exception&) {
    }
}

// An object variable used as an object: Nothing raises 91, as the run-time does.
template <class T>
T& Obj(const std::shared_ptr<T>& ref) {
    if (!ref) host::Raise(host::err::ObjectVariableNotSet);
    return *ref;
}

}  // namespace ps
