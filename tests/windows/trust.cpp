// trust CERTIFICATE: makes the current user's programs trust a certificate (in DER form). Windows
// asks before it does; Wine does not.

#include <windows.h>

#include <wincrypt.h>

#include <fstream>
#include <iterator>
#include <vector>

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    std::ifstream file(argv[1], std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    HCERTSTORE store = CertOpenSystemStoreA(0, "ROOT");
    const bool added = store
        && CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING,
            reinterpret_cast<const BYTE *>(bytes.data()), DWORD(bytes.size()),
            CERT_STORE_ADD_REPLACE_EXISTING, nullptr);
    if (store)
        CertCloseStore(store, 0);
    return added ? 0 : 1;
}
