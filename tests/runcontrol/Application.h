#pragma once

#include <QCoreApplication>

/// The application object that Qt's event loops need, without arguments.
class CApplication
{
private:
    int m_Count = 1;
    char m_Name[10] = "operator";
    char* m_Arguments[2] = {m_Name, nullptr};
    QCoreApplication m_Application{m_Count, m_Arguments};
};
