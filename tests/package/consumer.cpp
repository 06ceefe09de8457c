// What a program outside the library does with it: derive, convert, cast, and catch every class of exception.

#include <quiver/QvXmlLib.h>

#include <cstdio>
#include <string>

using namespace QvXmlLib9;

namespace
{

int s_nFailures = 0;

void Check(bool bHolds, const char* lpcWhat)
{
    if (!bHolds)
    {
        std::fprintf(stderr, "consumer: failed: %s\n", lpcWhat);
        ++s_nFailures;
    }
}

template <class TException, class TAction>
void CheckThrows(const char* lpcWhat, TAction&& action)
{
    try
    {
        action();
    }
    catch (const TException& ex)
    {
        Check(!ex.GetFullMessage().empty(), lpcWhat);
        return;
    }
    catch (...)
    {
    }
    Check(false, lpcWhat);
}

void CheckExceptions()
{
    const CXmlSerializationContext context;
    CheckThrows<CQvException>("CQvException",
                              [&]
                              {
                                  CXmlDocument document(context);
                                  document.LoadXml("<a>");
                              });
    CheckThrows<CQvValidationException>("CQvValidationException",
                                        [&]
                                        {
                                            Ci4Col col(L"n", L"", 1, 1, L"", -1, -1, L"", L"", L"", L"", -1,
                                                       CWhitespaceUtils::WhitespaceRule_Collapse, nullptr);
                                            col.ValidateCount(context);
                                        });
    CheckThrows<CQvInvalidValueException>("CQvInvalidValueException", []
                                          { CConversions::i4FromString(L"x", CWhitespaceUtils::WhitespaceRule_None); });
    CheckThrows<CQvInvalidNamespaceException>("CQvInvalidNamespaceException", [] { CElement element(L"a", L"##any"); });
    CheckThrows<CQvInvalidStateException>("CQvInvalidStateException",
                                          [] { CDateTime(CDateTime::dt_gYear).GetMonth(); });
    CheckThrows<CQvInvalidParamException>("CQvInvalidParamException",
                                          []
                                          {
                                              CstringCol col(L"s", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1,
                                                             CWhitespaceUtils::WhitespaceRule_None, nullptr);
                                              col.Item(0);
                                          });
    CheckThrows<CQvOverFlowException>("CQvOverFlowException", [] { CDecimal(L"1e30").ToLong(); });
}

void CheckConversions()
{
    CElement element(L"x");
    element.FromXml(L"<order xmlns='urn:a'><item n='1'>caf\u00E9</item></order>");
    const CXmlSerializationContext context;
    Check(element.ToXml(false, false, EOLType_LF, context) ==
              L"<AA:order xmlns:AA=\"urn:a\"><AA:item n=\"1\">caf\u00E9</AA:item></AA:order>",
          "open content keeps a document");
    const CBinaryData data = element.ToXmlStream(true, true, Encoding_UTF8, EOLType_LF, context, Compression_ZLib);
    Check(data.GetLength() > 0, "compressed stream");
    CXmlObjectBase& base = element;
    Check(dynamic_cast<CElement*>(base.GetBase()) == &element, "casts reach across the library's edge");
}

} // namespace

int main()
{
    Register(9, 0);
    CheckExceptions();
    CheckConversions();
    if (s_nFailures == 0)
        std::puts("consumer: ok");
    return s_nFailures == 0 ? 0 : 1;
}
