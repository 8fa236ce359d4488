#include "filehost/services/Reporting.h"

#include "filehost/Session.h"

namespace filehost {

void report(const QList<Problem>& problems)
{
    Session* const session = Session::current();
    if (session == nullptr) {
        return;
    }
    for (const Problem& problem : problems) {
        session->report(problem);
    }
}

} // namespace filehost
