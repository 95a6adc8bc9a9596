// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The activation channel's argument conversion on any value a caller on the session bus can
// send: every basic type, containers, variants, extreme and non-finite numbers.
#include "cossocontext.h"
#include "fuzzinput.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <cmath>
#include <limits>

using namespace Dravo;
using namespace Dravo::Fuzz;

namespace {

QVariant takeValue(CFuzzInput& in, int iDepth = 0)
{
    switch (in.take<uint8_t>() % 14) {
        case 0:
            return QVariant(in.take<int>());
        case 1:
            return QVariant(in.take<uint>());
        case 2:
            return QVariant(in.take<double>());
        case 3:
            return QVariant(bool(in.take<uint8_t>() & 1));
        case 4:
            return QVariant(in.takeString());
        case 5:
            return QVariant(in.takeBytes());
        case 6:
            return QVariant(in.take<qlonglong>());
        case 7:
            return QVariant(in.take<qulonglong>());
        case 8:
            return QVariant::fromValue(in.take<short>());
        case 9:
            return QVariant::fromValue(in.take<uchar>());
        case 10:
            return QVariant(QStringList{in.takeString(), in.takeString()});
        case 11:
            return QVariant::fromValue(QDBusObjectPath(in.takeString()));
        case 12:
            if (iDepth < 3)
                return QVariant::fromValue(QDBusVariant(takeValue(in, iDepth + 1)));
            return QVariant();
        default:
            return QVariant();
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    silenceQtLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize)
{
    CFuzzInput in(pData, iSize);
    while (!in.atEnd()) {
        const QVariant argument = takeValue(in);
        const char code = COssoContext::typeCode(argument);
        const QVariant converted = COssoContext::convertArgument(argument);
        switch (code) {
            case 'i':
                FUZZ_CHECK(converted.typeId() == QMetaType::Int);
                break;
            case 'b':
                FUZZ_CHECK(converted.typeId() == QMetaType::Bool);
                break;
            case 'u':
                FUZZ_CHECK(converted.typeId() == QMetaType::UInt);
                break;
            case 's':
                FUZZ_CHECK(converted.toString() == argument.toString());
                break;
            case 'd': {
                // A double arrives as an unsigned number: fraction dropped, clamped to the range.
                FUZZ_CHECK(converted.typeId() == QMetaType::UInt);
                const double d = argument.toDouble();
                const uint u = converted.toUInt();
                if (!(d > 0.0))
                    FUZZ_CHECK(u == 0);
                else if (d >= double(std::numeric_limits<uint>::max()))
                    FUZZ_CHECK(u == std::numeric_limits<uint>::max());
                else
                    FUZZ_CHECK(double(u) == std::trunc(d));
                break;
            }
            default:
                // Any other type keeps its position as an empty value.
                FUZZ_CHECK(!converted.isValid());
        }
    }
    return 0;
}
