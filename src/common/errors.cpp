#include "common/errors.h"

namespace ps {

ErrObject CurrentError() {
    try {
        throw;
    } catch (const host::Error& e) {
        return {e.Number(), e.Description(), e.Source()};
    } catch (const std::exception& e) {
        return {440, e.what(), {}};  // what the run-time calls an automation error
    } catch (...) {
        return {51, "Internal error", {}};
    }
}

}  // namespace ps
