#include <cxc.h>

#include <cxcfile/each_pair.h>
#include <cxcpkg/across_datasets.h>

#include <cstdio>

// Makes a package from two datasets, combines them and passes the result through a file.
int main() {
    CWinApp application(_T("consumer"));
    if (!AfxWinInit(nullptr, nullptr, nullptr, 0)) return 1;
    CSnsCohFacezq package;
    CSnsCohDatazq* const active = package.checkInitSnsCoh4Class(4, 3, 0, true);
    CSnsCohDatazq* const control = package.checkInitSnsCoh4Class(4, 1, 1, true);
    if (active == nullptr || control == nullptr) return 2;
    active->m_mCC[2][1].m_data[2] = 0.75;
    control->m_mCC[2][1].m_data[0] = 0.5;
    if (package.doAct_Ctl_operation() == 0) return 3;
    {
        CFile file(_T("consumer.cxc"), CFile::modeCreate | CFile::modeWrite);
        CArchive archive(&file, CArchive::store);
        if (package.m_cohActCtl->serialize(archive) == 0) return 4;
    }
    CSnsCohDatazq opened;
    CFile file(_T("consumer.cxc"), CFile::modeRead);
    CArchive archive(&file, CArchive::load);
    if (opened.serialize(archive) == 0) return 5;
    std::printf("%g\n", opened.getValue(2, 2, 1));
    return opened.getValue(2, 2, 1) == 0.25 ? 0 : 6;
}
