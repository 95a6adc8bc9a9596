#include "startaddressbook.h"

bool startAddressBook()
{
    // The contacts module connects to the address book when it is built into the client;
    // without it there is nothing to start.
    return true;
}
