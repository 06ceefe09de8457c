#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

namespace QvTest
{

/// Puts the process into a time zone for as long as it lives.
class CTimeZone
{
public:
    explicit CTimeZone(const char* lpcName)
    {
        const char* const lpcOld = std::getenv("TZ");
        m_bHadOne = lpcOld != nullptr;
        m_strOld = m_bHadOne ? lpcOld : "";
        setenv("TZ", lpcName, 1);
        tzset();
    }
    ~CTimeZone()
    {
        if (m_bHadOne)
            setenv("TZ", m_strOld.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }
    CTimeZone(const CTimeZone&) = delete;
    CTimeZone& operator=(const CTimeZone&) = delete;

private:
    bool m_bHadOne = false;
    std::string m_strOld;
};

} // namespace QvTest
