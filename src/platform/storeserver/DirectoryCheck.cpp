#include "storeserver/DirectoryCheck.h"

#include <ostream>

#include "storeserver/catalogue/CatalogueLoader.h"

namespace StoreServer {

int checkDirectory(const QString& directory, std::ostream& output) {
    const CatalogueLoader::Result result = CatalogueLoader(directory, 1).refresh();
    for (const Fault& fault : result.faults)
        output << fault.toString().toStdString() << '\n';
    if (!result.faults.isEmpty())
        return 1;
    output << result.catalogue->appCount() << " applications in " << result.catalogue->categoryCount()
           << " categories are in order\n";
    return 0;
}

}  // namespace StoreServer
