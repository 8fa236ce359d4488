#include "filehost/Session.h"

#include <iostream>

int main()
{
    QList<filehost::Problem> problems;
    if (filehost::Workspace::open("nowhere", problems) || problems.size() != 1) {
        return 1;
    }
    std::cout << filehost::toText(problems.first()).toStdString() << '\n';
    return problems.first().code == filehost::Problem::Code::Missing ? 0 : 1;
}
