#pragma once

#include "Operator.h"

#include <QMetaMethod>

#include <array>
#include <stdexcept>
#include <utility>

// One row for each of the signaler's signals, with one set of arguments: how to ask, to connect and
// to invoke, and what is to come of it.

/// What a throwing receiver throws.
struct RefusedByOperator : std::runtime_error
{
    RefusedByOperator() : std::runtime_error("refused") {}
};

struct RequestRow
{
    char const* name;            // of the row
    int index;                   // in the meta-object
    char const* signal;          // as spelled by SIGNAL
    char const* slot;            // as spelled by SLOT
    char const* request;         // that the operator remembers
    char const* requestByString; // the same for a string-based connection
    char const* answer;
    char const* unanswered; // without a receiver

    /// These ask and return the answer.
    std::string (*emitIt)(CQtSignaler&);
    std::string (*invokeIt)(CQtSignaler&, Qt::ConnectionType);
    QMetaObject::Connection (*connectOperator)(CQtSignaler&, COperator&, Qt::ConnectionType);
    QMetaObject::Connection (*connectRelay)(CQtSignaler&, CQtSignaler&);
    QMetaObject::Connection (*connectThrower)(CQtSignaler&);
};

std::vector<RequestRow> const& RequestRows();

/// The signaler's method at that index of its own.
inline QMetaMethod SignalerMethod(int index)
{
    QMetaObject const& object = CQtSignaler::staticMetaObject;
    return object.method(object.methodOffset() + index);
}
