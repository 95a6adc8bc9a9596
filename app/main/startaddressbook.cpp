#include "startaddressbook.h"

#if defined(TARVIK_HAVE_CONTACTS)
#include "caddressbook.h"
#endif

bool startAddressBook()
{
#if defined(TARVIK_HAVE_CONTACTS)
    // Connects in the background; the address book logs its own failure.
    Dravo::CAddressBook::instance()->initialize();
    return true;
#else
    // Built without the contacts module: nothing to connect to.
    return true;
#endif
}
