#pragma once

// Connects the client to the platform address book at start-up without blocking the
// GUI thread. Returns false when the connection cannot even be started; the client
// then runs on without contacts.
bool startAddressBook();
