#include "core/base/VersionInfoLabels.h"

const QMap<QString, QString>& versionInfoLabels() {
    static const QMap<QString, QString> labels{
        {"comments", "备注"},
        {"internalname", "内部名称"},
        {"productname", "产品名称"},
        {"companyname", "公司名称"},
        {"legalcopyright", "版权"},
        {"productversion", "产品版本"},
        {"filedescription", "文件描述"},
        {"legaltrademarks", "商标"},
        {"privatebuild", "私有构建"},
        {"fileversion", "文件版本"},
        {"originalfilename", "原始文件名"},
        {"specialbuild", "特殊构建"},
    };
    return labels;
}
