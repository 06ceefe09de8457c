#pragma once

namespace QvXmlLib9
{
class CXmlAttribute;
class CXmlElement;
struct QvVariant;
} // namespace QvXmlLib9

namespace QvXmlLib9Data
{

/// Hands the texts of a tree on as strings. Nothing is converted until somebody asks the variant for a string, so the
/// variant must not outlive the tree. Internal to the library.
class CTreeText
{
public:
    static void Store(const QvXmlLib9::CXmlElement& element, QvXmlLib9::QvVariant& value);
    static void Store(const QvXmlLib9::CXmlAttribute& attribute, QvXmlLib9::QvVariant& value);
};

} // namespace QvXmlLib9Data
