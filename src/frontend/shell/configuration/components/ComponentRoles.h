#pragma once

#include <Qt>

/// The data of a component's row besides its title and its tool tip.
namespace ComponentRoles {

enum Role {
    Name = Qt::UserRole + 1,  ///< the sort role: the digit of the row's group and the name
    SearchText,
    Description,  ///< the line below the name
    Action,       ///< one of DependencyState::Action
    Status,       ///< at the right edge; may be empty
    Kind,         ///< one of StatusKind
    Detail,       ///< such as the size; may be empty
};

enum StatusKind { Quiet, Good, Bad, Active };

}  // namespace ComponentRoles
