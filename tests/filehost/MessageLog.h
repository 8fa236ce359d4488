#ifndef UNITFLOW_TESTS_FILEHOST_MESSAGELOG_H
#define UNITFLOW_TESTS_FILEHOST_MESSAGELOG_H

#include "MessageCapture.h"

/// What went to Qt's message log since the test began or since this was last asked. A test that
/// ends with messages that it did not take fails.
QList<testhost::Message> takeMessages();

#endif
