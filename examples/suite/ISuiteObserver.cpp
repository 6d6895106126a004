#include "ISuiteObserver.h"

ISuiteObserver::~ISuiteObserver() = default;
