#include "tools/quiver-gen/binding/Support.h"

#include "tools/quiver-gen/schema/Text.h"

#include <iterator>

namespace quiver_gen::binding
{

namespace
{

constexpr SSupport s_documents[] = {
    {"schema", "", "a C++ namespace for its target namespace, with a pair of files", "",
     "CppWriter.WritesAPairForEachNamespaceAndOneForRoots"},
    {"schema", "targetNamespace", "the namespace in the tables of its classes; `--namespace` names the C++ namespace",
     "", "BindingOptions.NameNamespaces forms"},
    {"schema", "elementFormDefault attributeFormDefault", "the namespace, or none, in the record of each local member",
     "", "forms"},
    {"schema", "blockDefault finalDefault", "as `block` and `final` of each component", "",
     "SchemaChecks.ComplexDerivation"},
    {"schema", "version xmlns", "nothing: they tell about the document", "", "SchemaChecks.TheLanguage"},
    {"include", "",
     "its components as if they stood in the schema; one without a target namespace takes that of who includes it", "",
     "include SchemaLoader.GivesADocumentWithoutNamespaceThatOfWhoIncludesIt"},
    {"import", "", "the components of another namespace, also in circles", "", "import SchemaLoader.ImportsInCircles"},
    {"import", "namespace", "must be that of the document; a missing document is an error", "",
     "import SchemaLoaderRefuses.WithThePlace"},
    {"include import redefine", "schemaLocation", "a file, by itself, a catalog or `--location`; nothing is fetched",
     "", "SchemaLoader.FindsDocumentsByLocationsOfTheCaller SchemaLoader.FindsDocumentsByCatalogs"},
    {"redefine", "", "one class with all members: the former definition and what is added", "",
     "redefine SchemaLoader.RedefinesARedefinition BindingOptions.JoinRedefinedTypes"},
    {"annotation documentation", "", "`///` comments, in the languages that `--lang` names", "",
     "documentation BindingOptions.ChooseDocumentation"},
    {"appinfo", "", "nothing", "", "documentation"},
    {"appinfo documentation", "source", "nothing", "", "SchemaChecks.TheLanguage"},
    {"notation", "", "nothing: a value of type NOTATION is text", "",
     "SchemaConstructs.AreComponentsInTheOrderOfTheSchema"},
    {"notation", "name public system", "nothing", "", "SchemaChecks.TheLanguage"},
};

constexpr SSupport s_declarations[] = {
    {"element", "", "a member with `Get` and `Set`; a global one also a root of the factory", "any-type",
     "sequence CppWriter.WritesTheFactory BindingContent.BecomesMembersAndGroups"},
    {"element attribute", "name", "the name of the accessors, in Pascal case and made unique", "",
     "names BindingNames.AreApart"},
    {"element attribute", "ref", "the member that the global declaration says", "", "forms attributes"},
    {"element attribute", "type", "the type of the member: a value, or an object of a class", "",
     "sequence attributes"},
    {"element", "minOccurs maxOccurs", "required, `std::optional` or null, or a typed collection that checks its count",
     "occurrence", "sequence choice BindingContent.BecomesMembersAndGroups"},
    {"element", "default", "an empty element has it; `SDefault` holds its text", "shared-value",
     "values CppClasses.HoldsDefaultAndFixedValuesByRules"},
    {"element", "fixed", "the setter and the reader refuse another value; `SFixed` holds its text", "shared-value",
     "values CppClasses.HoldsDefaultAndFixedValuesByRules"},
    {"element", "nillable", "`CNillable` for a value, `INillable` for a class, with `IsNil` and `SetNil`", "nillable",
     "nillable"},
    {"element", "substitutionGroup", "a member or collection that takes each class of the group by its element name",
     "", "substitution CppClasses.ListsWhatMayStandInItsPlace"},
    {"element", "abstract", "only its substitutes are read", "abstract-element", "substitution"},
    {"element complexType", "final", "checked when the schema is read", "", "SchemaChecks.ComplexDerivation"},
    {"element", "block", "substitutes and types that it excludes are no alternatives", "block",
     "substitution BindingDerivation.BecomesBasesAndAlternatives"},
    {"element attribute", "form", "the namespace, or none, in its record", "", "forms attributes"},
    {"attribute", "", "a member with `Get` and `Set`", "", "attributes"},
    {"attribute", "use", "required, or `std::optional`; a prohibited one is no member", "", "attributes"},
    {"attribute", "default", "`Get` gives it where the document has none, `Has` tells which", "", "attributes"},
    {"attribute", "fixed", "as `default`; another value is refused", "", "attributes"},
    {"attributeGroup", "", "its attributes, on each class that refers to it", "", "groups"},
    {"attributeGroup group", "name ref", "which group it is", "", "groups"},
    {"anyAttribute", "", "`GetAnyAttribute`, a collection of attributes", "", "wildcards"},
};

constexpr SSupport s_types[] = {
    {"complexType", "", "a class", "", "CppClasses.PrintsAClassOfValues sequence"},
    {"complexType simpleType", "name",
     "the name of the class or the struct; an anonymous one is called after its element", "",
     "names BindingNames.AreApart"},
    {"complexType complexContent", "mixed", "`GetText`, all pieces of text joined; `--mixed refuse` makes it an error",
     "mixed", "mixed BindingOptions.RefuseMixedContent"},
    {"complexType", "abstract", "a class that is not made; `xsi:type` names one that is", "", "abstractTypes"},
    {"complexType", "block", "types that it excludes are no alternatives", "",
     "BindingDerivation.BecomesBasesAndAlternatives"},
    {"simpleContent", "", "`GetValue`, checked by its type, beside the attributes", "", "simpleContent"},
    {"complexContent", "", "the members of its derivation", "", "extension restriction"},
    {"extension", "", "a derived class; what may stand in its place is found by `xsi:type`", "",
     "extension simpleContent"},
    {"restriction", "",
     "of a class, a derived class with narrower tables; of a simple type, a struct with the facets of all steps",
     "restriction held-as-base", "restriction facets CppClasses.DescribesARestrictionAnewWithTheMembersOfTheBase"},
    {"extension restriction", "base", "the base class, or the base of the struct", "", "extension restriction"},
    {"sequence", "", "the members of the class, in their order; a nested one that repeats or may be absent is a class",
     "", "sequence groups"},
    {"choice", "", "members of which one is set, with `GetSelected`; a second one is refused", "empty-choice",
     "choice"},
    {"all", "", "members in any order, each at most once", "", "all"},
    {"group", "", "its members in place, or a class where it repeats or may be absent", "", "groups"},
    {"sequence choice all group", "minOccurs maxOccurs",
     "a member for the nested class: required, optional or a collection", "occurrence", "sequence choice all groups"},
    {"any", "", "`CElement`, or a collection of them that ends at the first element that is not let through",
     "wildcard-content", "wildcards"},
    {"any", "minOccurs maxOccurs", "optional, required or a collection that checks its count", "occurrence",
     "wildcards"},
    {"any anyAttribute", "namespace", "checked when it is read and written", "",
     "wildcards CppClasses.PrintsWildcards"},
    {"any anyAttribute", "processContents",
     "what `strict` and `lax` let through is checked by the global declarations while it is read", "wildcard-content",
     "wildcards Wildcard.ChecksContentByWhatIsKnown"},
    {"unique key keyref selector field", "", "nothing", "identity", "keys BindingWarnings.NameEveryPlaceThatIsLooser"},
    {"unique key keyref", "name", "checked when the schema is read", "", "SchemaChecks.SubstitutionAndKeys"},
    {"keyref", "refer", "checked when the schema is read", "", "SchemaChecks.SubstitutionAndKeys"},
    {"selector field", "xpath", "nothing", "identity", "keys"},
};

constexpr SSupport s_simpleTypes[] = {
    {"simpleType", "", "a struct with `Value` and `Type()`, by which members check themselves",
     "held-as-base mapped-to-text", "facets CppSimpleTypes.PrintsAnAtomicType"},
    {"simpleType", "final", "checked when the schema is read", "", "SchemaChecks.SimpleDerivation"},
    {"list", "", "`std::vector` of the item's value; each item is checked", "",
     "lists CppSimpleTypes.PrintsListsAndUnions"},
    {"list", "itemType", "the type of the items", "", "lists"},
    {"union", "", "text, which one of its member types has to take", "", "lists CppSimpleTypes.PrintsListsAndUnions"},
    {"union", "memberTypes", "the types, in the order in which they are tried", "", "lists"},
    {"length minLength maxLength", "", "checked: characters of text, octets of binary values, items of lists",
     "occurrence", "facets lists"},
    {"minInclusive minExclusive maxInclusive maxExclusive", "", "checked, in the order of the values", "mapped-to-text",
     "facets"},
    {"totalDigits fractionDigits", "", "checked, on each number", "mapped-to-text", "facets"},
    {"pattern", "", "an expression of the runtime for the whole value; one of each step has to match", "pattern",
     "facets BindingPatterns.MatchAsInSchemas"},
    {"enumeration", "", "an `enum class` for text; values of other types are compared with those listed", "qname",
     "facets CppSimpleTypes.PrintsAnEnumerationWithItsTexts"},
    {"whiteSpace", "", "done before anything is checked", "", "facets CppSimpleTypes.SaysEveryRuleOfWhiteSpace"},
    {"length minLength maxLength minInclusive minExclusive maxInclusive maxExclusive totalDigits fractionDigits "
     "pattern "
     "enumeration whiteSpace",
     "value", "the facet; of the steps of derivation the narrowest counts", "",
     "facets SchemaComponents.GatherFacetsOverAllSteps"},
    {"length minLength maxLength minInclusive minExclusive maxInclusive maxExclusive totalDigits fractionDigits "
     "whiteSpace",
     "fixed", "checked when the schema is read", "", "SchemaChecks.SimpleDerivation"},
};

constexpr SSupport s_builtins[] = {
    {"anyType", "", "`CElement`: an open element", "any-type", "mixed"},
    {"anySimpleType", "",
     "an element: `CTypedValue`, the text with the type that it says, which checks it; an attribute: `std::wstring`, "
     "as it stands",
     "", "anySimpleType TypedValue.SaysItsTypeAndIsCheckedByIt SchemaComponents.FindEveryBuiltInTypeByItsName"},
    {"string normalizedString token", "", "`std::wstring`, with the white space of the type", "", "facets"},
    {"language Name NCName NMTOKEN anyURI", "", "`std::wstring` of that form", "", "facets"},
    {"ID IDREF ENTITY", "", "`std::wstring` of that form", "id", "keys"},
    {"NMTOKENS IDREFS ENTITIES", "", "`std::vector<std::wstring>`, with an item at least", "id", "facets"},
    {"QName NOTATION", "",
     "`std::wstring` of that form; what its prefix stands for is declared where it is written, and listed, default and "
     "fixed names are the same with any prefix",
     "qname", "qnames Prefixes.OfValuesKeepTheirMeaning"},
    {"boolean", "", "`bool`", "", "facets"},
    {"decimal", "", "`CDecimal`", "", "facets"},
    {"integer nonPositiveInteger negativeInteger nonNegativeInteger positiveInteger", "",
     "`CBigInteger`, of any size; `long long` by `--integer i8`", "", "facets BindingOptions.HoldIntegersIn64Bits"},
    {"long int short byte", "", "`long long`, `int`, `short`, `signed char`", "", "facets"},
    {"unsignedLong unsignedInt unsignedShort unsignedByte", "",
     "`unsigned long long`, `unsigned int`, `unsigned short`, `unsigned char`; no minus", "", "facets"},
    {"float double", "", "`float`, `double`, written with as many digits as the value takes", "", "facets"},
    {"duration", "", "`CDateTimeSpan`", "", "facets"},
    {"dateTime time date gYearMonth gYear gMonthDay gDay gMonth", "", "`CDateTime`, with its zone", "", "facets"},
    {"hexBinary base64Binary", "", "`CBinaryData`", "", "facets"},
};

constexpr SSupport s_instances[] = {
    {"type", "",
     "the class among the alternatives of the declared one; it is written where the class is another, and at each "
     "value of any simple type that said it",
     "block", "abstractTypes extension anySimpleType"},
    {"nil", "", "`SetNil`; a nil element holds nothing", "nillable", "nillable"},
    {"schemaLocation noNamespaceSchemaLocation", "", "nothing: documents do not choose their schema", "",
     "XmlGeneratedClass.SchemaInstanceAttributesNeverReachTheMetadata"},
};

/// What a document shows and a schema does not, so that no warning can name a place.
struct SDeviation
{
    std::string_view svConstruct;
    std::string_view svWhat;
    std::string_view svWhy;
};

constexpr SDeviation s_deviations[] = {
    {"an element under a strict wildcard without a declaration, with `xsi:type`", "it is kept as it is",
     "What stands under wildcards is looked up among global elements, not among types."},
    {"an abstract global element under a lax wildcard", "it is kept as it is",
     "Only elements that may be a root are known to wildcards. Strict ones refuse it."},
    {"a prefix in a value that is declared on a sibling and not around the value", "it is taken as declared",
     "Of a prefix that is bound once in a document it is not kept where."},
    {"`xsi:type` at an element of a simple type other than `xs:anySimpleType`",
     "it is passed over, and not written again",
     "The value is checked by the declared type, and has no place for the name of another."},
    {"`xsi:type` at an element of type `xs:anySimpleType` that names a complex type with simple content",
     "it is refused", "The class for the element has no attributes."},
    {"`xsi:type` in open content", "its value is text with the prefix that it had",
     "Open elements hold attributes as texts, and no schema says which are names."},
    {"a group that has to stand more than once, and begins with an element that repeats",
     "each round takes all that it finds, so that two rounds of `a` once or twice refuse `a a` and `a a a a`",
     "A class takes what is its own and does not go back."},
    {"a pattern on numbers, dates and other values that are not held as text",
     "what a program sets is checked as the value prints, and `007` is written as `7`",
     "Only durations keep the text that they were read with."},
};

template <std::size_t n>
constexpr SSupportSection MakeSection(std::string_view svTitle, std::string_view svConstruct, const SSupport (&rows)[n])
{
    return {svTitle, svConstruct, rows, n};
}

void AppendNames(std::string& strText, std::string_view svNames, std::string_view svMark)
{
    bool bFirst = true;
    for (const std::string_view svName : schema::SplitList(svNames))
    {
        strText += bFirst ? "" : ", ";
        strText += svMark;
        strText += svName;
        strText += svMark;
        bFirst = false;
    }
}

std::string PrintRow(const SSupport& row)
{
    std::string strText = "| ";
    AppendNames(strText, row.svConstructs, "`");
    strText += " | ";
    AppendNames(strText, row.svAttributes, "`");
    strText += row.svAttributes.empty() ? "| " : " | ";
    strText += row.svMapping;
    strText += " | ";
    for (const std::string_view svId : schema::SplitList(row.svWarnings))
        strText += (strText.back() == ' ' ? "[" : ", [") + std::string(svId) + "](#" + std::string(svId) + ')';
    strText += row.svWarnings.empty() ? "| " : " | ";
    AppendNames(strText, row.svProofs, "`");
    return strText + (row.svProofs.empty() ? "|\n" : " |\n");
}

} // namespace

const std::vector<SSupportSection>& GetSupport()
{
    static const std::vector<SSupportSection> s_sections = {
        MakeSection("Documents", "Element", s_documents),
        MakeSection("Declarations", "Element", s_declarations),
        MakeSection("Complex types and their content", "Element", s_types),
        MakeSection("Simple types and facets", "Element", s_simpleTypes),
        MakeSection("Built-in types", "Type", s_builtins),
        MakeSection("Attributes of documents, of `xsi`", "Attribute", s_instances)};
    return s_sections;
}

std::string PrintSupport()
{
    std::string strText =
        "# What becomes of each construct of a schema\n\n"
        "Every element of XML Schema 1.0 with its attributes, every facet, and every built-in type: what it is in C++, "
        "and where "
        "the\nclasses read more freely than a schema says. Any element may have an `id`, which becomes nothing. "
        "`quiver-gen` warns of each\nplace that is looser, in the words of a [table "
        "below](#where-classes-are-looser), "
        "which also says why. The last column names\nschemas of `tests/tools/gen/constructs` with documents that are "
        "right "
        "and wrong, and tests.\n\n"
        "`scripts/renew_support.sh` writes this page from the tables of `tools/quiver-gen/binding`.\n";
    for (const SSupportSection& section : GetSupport())
    {
        strText += "\n## " + std::string(section.svTitle) + "\n\n| " + std::string(section.svConstruct) +
                   " | Attributes | In C++ | Looser | Shown by |\n|---|---|---|---|---|\n";
        for (const SSupport& row : section)
            strText += PrintRow(row);
    }
    strText += "\n## Where classes are looser\n\n| Warning | Message | Why |\n|---|---|---|\n";
    for (const SWarningKind& kind : s_warnings)
        strText += "| <a id=\"" + std::string(kind.svId) + "\"></a>`" + std::string(kind.svId) + "` | " +
                   std::string(kind.svText) + " | " + std::string(kind.svWhy) + " |\n";
    strText +=
        "\n## Cases of the W3C test suite\n\n"
        "Of 768 cases of its tests for XML Schema (448 valid and 320 invalid documents) none is judged otherwise: "
        "`quiver-gen --check`\nreads the valid ones and refuses the invalid ones (`scripts/check_w3c.sh --at-most "
        "0`). What no case of them shows, and no warning names:\n\n"
        "| Construct | What is looser, or stricter | Why |\n|---|---|---|\n";
    for (const SDeviation& deviation : s_deviations)
        strText += "| " + std::string(deviation.svConstruct) + " | " + std::string(deviation.svWhat) + " | " +
                   std::string(deviation.svWhy) + " |\n";
    return strText;
}

} // namespace quiver_gen::binding
