#pragma once

#include "quiver/foundation/BinaryData.h"

#include <string>
#include <string_view>
#include <vector>

/// @file
/// Bytes as lists of numbers, the way that tests of binary forms write them.

namespace QvTest
{

using Octets = std::vector<int>;

inline Octets OctetsOf(std::string_view bytes)
{
    Octets octets;
    for (const char c : bytes)
        octets.push_back(static_cast<unsigned char>(c));
    return octets;
}

inline Octets OctetsOf(const QvXmlLib9::CBinaryData& data)
{
    return OctetsOf(data.GetView());
}

/// A buffer of its own with these bytes.
inline QvXmlLib9::CBinaryData BinaryOf(std::string_view bytes)
{
    QvXmlLib9::CBinaryData data;
    data.SetBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned long>(bytes.size()));
    return data;
}

inline std::string BytesOf(const Octets& octets)
{
    std::string strBytes;
    for (const int n : octets)
        strBytes += static_cast<char>(n);
    return strBytes;
}

/// The lists one behind the other.
inline Octets Joined(std::initializer_list<Octets> parts)
{
    Octets joined;
    for (const Octets& part : parts)
        joined.insert(joined.end(), part.begin(), part.end());
    return joined;
}

} // namespace QvTest
