#pragma once

#include "fuzz/Decisions.h"

#include "quiver/foundation/BinaryData.h"
#include "quiver/values/BigInteger.h"
#include "quiver/values/DateTime.h"
#include "quiver/values/DateTimeSpan.h"
#include "quiver/values/Decimal.h"

#include <limits>
#include <string>
#include <vector>

/// @file
/// A value of a kind by decision: one from the edges of what the kind holds, or any other.

namespace fuzz
{

std::wstring MakeText(CDecisions& decisions);
/// Text that more often than not is a name, with a prefix or without.
std::wstring MakeName(CDecisions& decisions);
/// A name, or what looks like one, whose prefix is none, p or xs.
std::wstring MakeQName(CDecisions& decisions);
std::vector<std::wstring> MakeNames(CDecisions& decisions);
bool MakeBool(CDecisions& decisions);
float MakeFloat(CDecisions& decisions);
double MakeDouble(CDecisions& decisions);
std::vector<double> MakeDoubles(CDecisions& decisions);

/// @throws QvXmlLib9::CQvException for a text that is no number.
QvXmlLib9::CDecimal MakeDecimal(CDecisions& decisions);
/// @throws QvXmlLib9::CQvException for a text that is no number.
QvXmlLib9::CBigInteger MakeBigInteger(CDecisions& decisions);
/// @throws QvXmlLib9::CQvException for a text that is no duration.
QvXmlLib9::CDateTimeSpan MakeDuration(CDecisions& decisions);
/// Of any kind, the empty one included.
/// @throws QvXmlLib9::CQvException for a text or fields that are no date.
QvXmlLib9::CDateTime MakeDate(CDecisions& decisions);
QvXmlLib9::CBinaryData MakeBinary(CDecisions& decisions);

template <class TInteger>
TInteger MakeInteger(CDecisions& decisions)
{
    using Limits = std::numeric_limits<TInteger>;
    switch (decisions.Below(8))
    {
    case 0:
        return Limits::min();
    case 1:
        return Limits::max();
    case 2:
        return 0;
    case 3:
        return 1;
    case 4:
        return static_cast<TInteger>(-1);
    case 5:
        return static_cast<TInteger>(Limits::max() / 2 + 1);
    default:
        return decisions.Bits<TInteger>();
    }
}

} // namespace fuzz
