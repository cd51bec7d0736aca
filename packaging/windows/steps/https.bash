# Sourced by packaging/windows/try: the step that fetches a page through Schannel.

# certificate NAME: creates NAME.pem and NAME-key.pem for loopback. The key is RSA, because Wine
# rejects an ECDSA signature if one of its two numbers happens to be short.
certificate() {
    openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj "/CN=$1" \
        -addext subjectAltName=IP:127.0.0.1 -keyout "$https/$1-key.pem" -out "$https/$1.pem" \
        2>/dev/null
}

# serve_files FOLDER PORT: serves files, which contain their headers, with the certificate "server" on
# a port, 0 for a free one, and stores it in $port. They need a Content-Length, because Wine's Schannel
# does not report the end of a connection.
serve_files() {
    : >"$https/listening.out"
    (cd "$1" && exec openssl s_server -accept "127.0.0.1:$2" -HTTP -key "$https/server-key.pem" \
        -cert "$https/server.pem") >"$https/listening.out" 2>&1 &
    stage_processes+=($!)
    stage_until 60 grep -q ACCEPT "$https/listening.out" || stage_fail "The HTTPS server did not start."
    port=$2
    # Reported only if it was chosen.
    [ "$port" != 0 ] || port=$(sed -n 's/^ACCEPT .*:\([0-9]*\)$/\1/p' "$https/listening.out")
}

# fetch_page CERTIFICATE: fetches the page, trusting only that certificate.
fetch_page() {
    wine "$home/httpsget.exe" "https://127.0.0.1:$port/page.txt" \
        "$(windows_path "$https/$1.pem")" >"$https/$1.out" 2>&1 || true
}

# lacks TEXT FILE
lacks() {
    ! grep -qF -- "$1" "$2"
}

step_https() {
    say "An HTTPS page is fetched through Schannel, and only from a trusted server"
    after install
    local https=$stage/https port
    rm -rf "$https"
    mkdir "$https"
    certificate server
    certificate other
    printf 'HTTP/1.1 200 OK\r\nContent-Length: 15\r\n\r\nIt came by TLS.' >"$https/page.txt"
    serve_files "$https" 0
    cp "$output/bin/httpsget.exe" "$home"
    fetch_page server
    expect "TLS did not use Schannel." grep -q '^schannel' "$https/server.out"
    expect "The page was not received." grep -q "It came by TLS." "$https/server.out"
    fetch_page other
    expect "The other certificate was not tried." grep -q '^schannel' "$https/other.out"
    expect "An untrusted server was accepted." lacks "It came" "$https/other.out"
    rm "$home/httpsget.exe"
}
