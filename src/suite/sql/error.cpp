#include "suite/sql/error.h"

namespace qndr::sql {

bool Error::IsOfThisComputer() const {
    switch (kind_) {
    case ErrorKind::Interrupted: // a statement that takes too long is no better on another day
    case ErrorKind::Constraint:
    case ErrorKind::Other:
        return false;
    default:
        return true;
    }
}

} // namespace qndr::sql
