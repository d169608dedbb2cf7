// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <string>
#include <vector>

/// Functions a workspace manager runs at one moment, in the order they were
/// added; a function added twice runs twice. Remove takes the first equal one.
template <class... Arguments>
class KELCallbackList {
public:
    using Function = void (*)(Arguments...);

    void AddTail(Function function) { m_functions.push_back(function); }
    bool Remove(Function function)
    {
        const auto found = std::find(m_functions.begin(), m_functions.end(), function);
        if (found == m_functions.end())
            return false;
        m_functions.erase(found);
        return true;
    }
    void Execute(Arguments... arguments) const
    {
        // A copy: a callback may add or remove callbacks.
        const std::vector<Function> functions = m_functions;
        for (Function function : functions)
            function(arguments...);
    }
    std::size_t GetCount() const { return m_functions.size(); }
    bool IsEmpty() const { return m_functions.empty(); }

private:
    std::vector<Function> m_functions;
};

/// Run without arguments: saving, after opening, closing.
using IWorkspaceCallbackList = KELCallbackList<>;
/// Run with the workspace's name before it opens.
using IWorkspaceOpenCallbackList = KELCallbackList<std::string>;
