#pragma once

#include "quiver/foundation/platform/Platform.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace QvTest
{

/// Makes the n-th file operation of a kind fail, counted from 0, for as long as it lives.
class CFileFault
{
public:
    CFileFault(QvXmlLib9::Platform::EFileOperation eOperation, int nth, std::uint32_t dwError)
    {
        s_eOperation = eOperation;
        s_nAhead = nth;
        s_dwError = dwError;
        EXPECT_EQ(nullptr, QvXmlLib9::Platform::SetFileFault(OnOperation));
    }
    ~CFileFault() { EXPECT_EQ(OnOperation, QvXmlLib9::Platform::SetFileFault(nullptr)); }
    CFileFault(const CFileFault&) = delete;
    CFileFault& operator=(const CFileFault&) = delete;

    /// Whether there were enough operations for the fault to be met.
    bool WasMet() const { return s_nAhead < 0; }

private:
    static std::uint32_t OnOperation(QvXmlLib9::Platform::EFileOperation eOperation)
    {
        return eOperation == s_eOperation && s_nAhead-- == 0 ? s_dwError : 0;
    }

    static inline QvXmlLib9::Platform::EFileOperation s_eOperation;
    static inline int s_nAhead;
    static inline std::uint32_t s_dwError;
};

} // namespace QvTest
