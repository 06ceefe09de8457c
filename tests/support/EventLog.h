#pragma once

#include "quiver/core/XmlObjectBase.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

/// @file
/// A listener that writes down what it hears.

namespace QvTest
{

class CEventLog : public QvXmlLib9::IEventSink
{
public:
    struct SEvent
    {
        QvXmlLib9::CXmlObjectBase* pSource;
        MsgType eType;
        void* pData;
        /// What the data of a removal point to, -1 without data.
        int nIndex;
    };

    virtual ~CEventLog() = default;

    void OnEvent(QvXmlLib9::CXmlObjectBase* pMsgSource, MsgType eMsgType, void* pData) override
    {
        const bool bHasIndex = pData != nullptr && (eMsgType == MsgType_Remove || eMsgType == MsgType_RemoveComplete);
        m_events.push_back({pMsgSource, eMsgType, pData, bHasIndex ? *static_cast<int*>(pData) : -1});
        if (m_pfnReact)
            m_pfnReact(eMsgType);
    }

    /// What was heard since the last call, one word an event: "Add AddComplete Change".
    std::string Take()
    {
        static const char* const s_names[] = {"Change", "Add", "AddComplete", "Remove", "RemoveComplete"};
        std::string strHeard;
        for (const SEvent& event : m_events)
        {
            if (!strHeard.empty())
                strHeard += ' ';
            strHeard += s_names[event.eType];
            if (event.nIndex >= 0)
                strHeard += std::to_string(event.nIndex);
        }
        m_events.clear();
        return strHeard;
    }

    std::vector<SEvent> m_events;
    /// Called behind the entry of each event.
    std::function<void(MsgType)> m_pfnReact;
};

} // namespace QvTest
