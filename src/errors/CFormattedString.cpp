#include <BaseUtilities/CFormattedString.h>

unsigned long CFormattedString::m_sIndentLevel = 0;
char const CFormattedString::EMPTY_STR[1] = "";

CFormattedString::~CFormattedString() = default;
