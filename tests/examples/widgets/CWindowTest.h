#pragma once

#include "CAbortSwitch.h"
#include "CScriptedOperator.h"
#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <CMainWindow.h>
#include <CallIn.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

/// A window over four files in two folders and above them, in a home without
/// documents, before an operator.
class CWindowTest : public testing::Test
{
protected:
    CWindowTest()
    {
        for (char const* const folder : {"one", "two"})
            std::filesystem::create_directory(m_Files.Path() / folder);
        for (char const* const file : {"one/a.txt", "one/b.txt", "three.txt", "two/c.txt"})
            WriteFile(m_Files / file, std::string("Contents of ") + file);
        m_Options.m_Folder = m_Files.Path();
        m_Options.m_WorkParent = m_Work.Path();
    }

    CMainWindow& Window()
    {
        if (m_Window == nullptr) {
            m_Window = std::make_unique<CMainWindow>(m_Options);
            m_Window->show();
        }
        return *m_Window;
    }

    void Run()
    {
        Window().StartSuite();
        ASSERT_TRUE(WaitUntil([this] { return !Window().IsRunning(); }));
    }

    /// Has the copy of the file of that name (its whole path below the folder) go wrong.
    void Spoil(std::string const& name)
    {
        m_Options.m_Copy = [file = m_Files / name](auto const& from, auto const& to,
                                                   ECopyFailType type) {
            auto copy = TqCopyFile(from, to, type);
            if (std::string(from.data(), from.size()) == file)
                WriteFile(copy->to_path(), "spoiled");
            return copy;
        };
    }

    /// Calls `act` on the interface's thread when the file of that name (its whole
    /// path below the folder) is copied, which waits for it.
    void AtCopyOf(std::string const& name, std::function<void()> act)
    {
        m_Options.m_Copy = [this, file = m_Files / name, act = std::move(act)](
                               auto const& from, auto const& to, ECopyFailType type) {
            if (std::string(from.data(), from.size()) == file)
                CallIn(*m_Window, act);
            return TqCopyFile(from, to, type);
        };
    }
    void AtFirstCopy(std::function<void()> act) { AtCopyOf("one/a.txt", std::move(act)); }

    static void Reject(QDialog& dialog) { dialog.reject(); }

    CTemporaryFolder const m_Files;
    CTemporaryFolder const m_Work;
    CTemporaryFolder const m_Home;
    CScopedEnvironment const m_HomeVariable{"HOME", m_Home.Path().native()};
    CScopedEnvironment const m_Configuration{"XDG_CONFIG_HOME", std::nullopt};
    CAbortSwitch const m_Switch;
    CSuiteOptions m_Options;
    CScriptedOperator m_Operator;
    std::unique_ptr<CMainWindow> m_Window;
};
