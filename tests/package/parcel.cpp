// What a program does with classes that the build generates.

#include "Parcel.h"
#include "Roots.h"

#include <quiver/QvXmlLib.h>

#include <cstdio>

using namespace QvXmlLib9;

int main()
{
    const CXmlSerializationContext context;
    const CSmartPtr<parcel::CParcel> spParcel = demo::CRoots::Parcel();
    spParcel->SetTo(L"Vienna");
    spParcel->SetWeight(1200);
    if (spParcel->ToXml(false, false, EOLType_LF, context) !=
        L"<AA:parcel xmlns:AA=\"urn:example:parcel\"><AA:to>Vienna</AA:to><AA:weight>1200</AA:weight></AA:parcel>")
    {
        std::fputs("parcel: not written as expected\n", stderr);
        return 1;
    }
    try
    {
        spParcel->SetWeight(31501);
    }
    catch (const CQvInvalidValueException&)
    {
        std::puts("parcel: ok");
        return 0;
    }
    std::fputs("parcel: too heavy a parcel was taken\n", stderr);
    return 1;
}
