#!/usr/bin/env python3
"""Generates utils/MimeTypeTable.cpp, the constant table of file name
extensions and media types.

Run once by hand when the list changes:  python3 scripts/gen_mime_table.py
The build never runs it: the generated file is committed, so building needs
no /etc/mime.types.

Where the types come from, in this order:
  1. OWN_ROWS: this system's own document types, at their extension's place;
  2. FIXED: rows whose value is settled here whatever a system list says;
  3. Debian's /etc/mime.types (the first line that lists the extension);
  4. FALLBACK: the registered or customary type for extensions that list lacks.
"""
import os
import sys

MIME_TYPES = '/etc/mime.types'
OUTPUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', 'utils', 'MimeTypeTable.cpp')

# The extensions of the public media types, in table order. The first row,
# ".txt", is the default and stands out of order; the rest ascend.
EXTENSIONS = [
    '.txt', '.%', '.~', '.123', '.323', '.3dml', '.3g2', '.3gp', '.7z', '.aab', '.aac', '.aam',
    '.aas', '.abw', '.ac', '.acc', '.ace', '.acu', '.adp', '.aep', '.afp', '.ahead', '.ai', '.aif',
    '.aifc', '.aiff', '.air', '.ait', '.alc', '.ami', '.amr', '.anx', '.apk', '.application',
    '.apr', '.art', '.asc', '.asf', '.asn', '.aso', '.asx', '.atc', '.atom', '.atomcat',
    '.atomsrv', '.atomsvc', '.atx', '.au', '.avi', '.aw', '.awb', '.axa', '.axv', '.azf', '.azs',
    '.azw', '.b', '.bak', '.bat', '.bcpio', '.bdf', '.bdm', '.bed', '.bh2', '.bib', '.bmi', '.boo',
    '.book', '.box', '.brf', '.bsd', '.btif', '.bz', '.bz2', '.c', '.c++', '.c11amc', '.c11amz',
    '.c3d', '.c4g', '.cab', '.cac', '.cache', '.cap', '.car', '.cascii', '.cat', '.cbin', '.cbr',
    '.cbz', '.cc', '.ccxml', '.cda', '.cdbcmsg', '.cdf', '.cdkey', '.cdmia', '.cdmic', '.cdmid',
    '.cdmio', '.cdmiq', '.cdx', '.cdxml', '.cdy', '.cef', '.cer', '.cgm', '.chat', '.chm', '.chrt',
    '.cif', '.cii', '.cil', '.cla', '.class', '.clkk', '.clkp', '.clkt', '.clkw', '.clkx', '.clp',
    '.cls', '.cmc', '.cmdf', '.cml', '.cmp', '.cod', '.com', '.config', '.cpa', '.cpio', '.cpp',
    '.cr2', '.crd', '.crt', '.crw', '.cryptonote', '.csf', '.csh', '.csm', '.csml', '.csp', '.css',
    '.csv', '.ctab', '.ctx', '.cu', '.cub', '.curl', '.cww', '.cxf', '.cxx', '.d', '.dae', '.daf',
    '.dat', '.davmount', '.dcr', '.dcurl', '.dd2', '.ddd', '.deb', '.der', '.dfac', '.dif',
    '.diff', '.dir', '.dis', '.djv', '.djvu', '.dl', '.dll', '.dmg', '.dms', '.dna', '.doc',
    '.docm', '.docx', '.dot', '.dotm', '.dotx', '.dp', '.dpg', '.dra', '.dsc', '.dssc', '.dtb',
    '.dtd', '.dts', '.dtshd', '.dv', '.dvi', '.dwf', '.dwg', '.dx', '.dxf', '.dxp', '.dxr',
    '.ecelp4800', '.ecelp7470', '.ecelp9600', '.edm', '.edx', '.efif', '.ei6', '.emb', '.embl',
    '.eml', '.emma', '.ent', '.eol', '.eot', '.eps', '.eps2', '.eps3', '.epsf', '.epsi', '.epub',
    '.erf', '.es', '.es3', '.esf', '.etx', '.exe', '.exi', '.ext', '.ez', '.ez2', '.ez3', '.f',
    '.f4v', '.fb', '.fbdoc', '.fbs', '.fch', '.fchk', '.fcs', '.fdf', '.fe_launch', '.fg5', '.fh',
    '.fig', '.flac', '.fli', '.flo', '.flv', '.flw', '.flx', '.fly', '.fm', '.fnc', '.fpx',
    '.frame', '.frm', '.fsc', '.fst', '.ftc', '.fti', '.fvt', '.fxp', '.fzs', '.g2w', '.g3',
    '.g3w', '.gac', '.gal', '.gam', '.gamin', '.gau', '.gcf', '.gcg', '.gdl', '.gen', '.geo',
    '.gex', '.gf', '.ggb', '.ggt', '.ghf', '.gim', '.gjc', '.gjf', '.gl', '.gmx', '.gnumeric',
    '.gph', '.gpt', '.gqf', '.gram', '.grv', '.grxml', '.gsf', '.gsm', '.gtar', '.gtm', '.gtw',
    '.gv', '.gxt', '.gz', '.h', '.h++', '.h261', '.h263', '.h264', '.hal', '.hbci', '.hdf', '.hh',
    '.hin', '.hlp', '.hpgl', '.hpid', '.hpp', '.hps', '.hqx', '.hs', '.hta', '.htc', '.htke',
    '.htm', '.hvd', '.hvp', '.hvs', '.hxx', '.i2g', '.ica', '.icc', '.ice', '.ico', '.ics', '.icz',
    '.ief', '.ifm', '.iges', '.igl', '.igm', '.igs', '.igx', '.iif', '.iii', '.imp', '.ims',
    '.info', '.inp', '.ins', '.ipfix', '.ipk', '.irm', '.irp', '.iso', '.isp', '.ist', '.istr',
    '.itp', '.ivp', '.ivu', '.jad', '.jam', '.jar', '.java', '.jdx', '.jisp', '.jlt', '.jmz',
    '.jng', '.jnlp', '.joda', '.jpe', '.jpeg', '.jpgv', '.jpm', '.js', '.kar', '.karbon', '.key',
    '.kfo', '.kia', '.kil', '.kin', '.kml', '.kmz', '.kne', '.kon', '.kpr', '.kpt', '.ksp', '.ktx',
    '.ktz', '.kwd', '.kwt', '.lasxml', '.latex', '.lbd', '.lbe', '.les', '.lha', '.lhs', '.lin',
    '.link66', '.lrm', '.lsf', '.lsx', '.ltf', '.ltx', '.lvp', '.lwp', '.lyx', '.lzh', '.lzx',
    '.m21', '.m3g', '.m3u', '.m3u8', '.m4a', '.m4v', '.ma', '.mads', '.mag', '.maker', '.man',
    '.manifest', '.mathml', '.mbk', '.mbox', '.mc1', '.mcd', '.mcif', '.mcm', '.mcurl', '.mdb',
    '.mdi', '.me', '.mesh', '.meta4', '.mets', '.mfm', '.mgp', '.mgz', '.mid', '.midi', '.mif',
    '.mj2', '.mkv', '.mlp', '.mm', '.mmd', '.mmf', '.mml', '.mmod', '.mmr', '.mng', '.mny', '.moc',
    '.mods', '.mol', '.mol2', '.moo', '.mop', '.mopcrt', '.mov', '.movie', '.mp2', '.mp3', '.mp4',
    '.mp4a', '.mpc', '.mpe', '.mpeg', '.mpega', '.mpg', '.mpga', '.mpkg', '.mpm', '.mpn', '.mpp',
    '.mpv', '.mpy', '.mqy', '.mrc', '.mrcx', '.ms', '.mscml', '.mseq', '.msf', '.msh', '.msi',
    '.msl', '.msty', '.mts', '.mus', '.musicxml', '.mvb', '.mwf', '.mxf', '.mxl', '.mxml', '.mxs',
    '.mxu', '.n3', '.nb', '.nbp', '.nc', '.ncx', '.nef', '.n-gage', '.ngdat', '.nlu', '.nml',
    '.nnd', '.nns', '.nnw', '.npx', '.nsf', '.nwc', '.o', '.oa2', '.oa3', '.oas', '.obd', '.oda',
    '.odb', '.odc', '.odf', '.odft', '.odg', '.odi', '.odm', '.odp', '.ods', '.odt', '.oga',
    '.ogg', '.ogv', '.ogx', '.old', '.onetoc', '.opf', '.orf', '.org', '.osf', '.osfpvg', '.otc',
    '.otf', '.otg', '.oth', '.oti', '.otp', '.ots', '.ott', '.oxt', '.oza', '.p', '.p10', '.p12',
    '.p7b', '.p7m', '.p7r', '.p7s', '.p8', '.pac', '.pas', '.patch', '.paw', '.pbd', '.pbm',
    '.pcap', '.pcf', '.pcl', '.pclxl', '.pcurl', '.pcx', '.pdb', '.pdf', '.pfa', '.pfb', '.pfr',
    '.pgm', '.pgn', '.pgp', '.php', '.php3', '.php3p', '.php4', '.php5', '.phps', '.pht', '.phtml',
    '.pic', '.pk', '.pki', '.pkipath', '.pl', '.plb', '.plc', '.plf', '.pls', '.pm', '.pml',
    '.pnm', '.portpkg', '.pot', '.potm', '.potx', '.ppam', '.ppd', '.ppm', '.pps', '.ppsm',
    '.ppsx', '.ppt', '.pptm', '.pptx', '.prc', '.pre', '.prf', '.prt', '.ps', '.psb', '.psd',
    '.psf', '.pskcxml', '.ptid', '.pub', '.pvb', '.pwn', '.py', '.pya', '.pyc', '.pyo', '.pyv',
    '.qam', '.qbo', '.qfx', '.qgs', '.qps', '.qt', '.qtl', '.qxd', '.ra', '.ram', '.rar', '.ras',
    '.rb', '.rcprofile', '.rd', '.rdf', '.rdz', '.rep', '.res', '.rgb', '.rhtml', '.rif', '.rip',
    '.rl', '.rlc', '.rld', '.rm', '.rmp', '.rms', '.rnc', '.roff', '.ros', '.rp9', '.rpm', '.rpss',
    '.rpst', '.rq', '.rs', '.rsd', '.rss', '.rtf', '.rtx', '.rxn', '.s', '.saf', '.sbml', '.sc',
    '.scala', '.scd', '.scm', '.scq', '.scr', '.scs', '.sct', '.scurl', '.sd', '.sd2', '.sda',
    '.sdc', '.sdd', '.sdf', '.sdkm', '.sdp', '.sds', '.sdw', '.see', '.seed', '.sema', '.semd',
    '.semf', '.ser', '.setpay', '.setreg', '.sfd-hdstx', '.sfs', '.sgf', '.sgl', '.sgml', '.sh',
    '.shar', '.shf', '.shp', '.shtml', '.shx', '.sid', '.sik', '.silo', '.sis', '.sisx', '.sit',
    '.sitx', '.skd', '.skm', '.skp', '.skt', '.sldm', '.sldx', '.slt', '.sm', '.smf', '.smi',
    '.smil', '.snd', '.snf', '.spc', '.spf', '.spl', '.spot', '.spp', '.spq', '.spx', '.src',
    '.sru', '.srx', '.sse', '.ssf', '.ssml', '.st', '.stc', '.std', '.stf', '.sti', '.stk', '.stl',
    '.str', '.stw', '.sty', '.sub', '.sus', '.sv4cpio', '.sv4crc', '.svc', '.svd', '.svg', '.svgz',
    '.sw', '.swf', '.swfl', '.swi', '.sxc', '.sxd', '.sxg', '.sxi', '.sxm', '.sxw', '.t', '.tao',
    '.tar', '.taz', '.tcap', '.tcl', '.teacher', '.tei', '.tex', '.texi', '.texinfo', '.text',
    '.tfi', '.tfm', '.tgf', '.tgz', '.thmx', '.tiff', '.tk', '.tm', '.tmo', '.torrent', '.tpl',
    '.tpt', '.tr', '.tra', '.trm', '.ts', '.tsd', '.tsp', '.tsv', '.ttf', '.ttl', '.twd', '.txd',
    '.txf', '.udeb', '.ufd', '.uls', '.umj', '.unityweb', '.uoml', '.uri', '.ustar', '.utz', '.uu',
    '.uva', '.uvh', '.uvi', '.uvm', '.uvp', '.uvs', '.uvu', '.uvv', '.val', '.vcd', '.vcf', '.vcg',
    '.vcs', '.vcx', '.vis', '.viv', '.vmd', '.vms', '.vrm', '.vrml', '.vsd', '.vsf', '.vtu',
    '.vxml', '.wad', '.wav', '.wax', '.wbmp', '.wbs', '.wbxml', '.weba', '.webm', '.webp', '.wg',
    '.wgt', '.wk', '.wm', '.wma', '.wmd', '.wmf', '.wml', '.wmlc', '.wmls', '.wmlsc', '.wmv',
    '.wmx', '.wmz', '.woff', '.wp5', '.wpd', '.wpl', '.wps', '.wqd', '.wri', '.wrl', '.wsc',
    '.wsdl', '.wspolicy', '.wtb', '.wvx', '.wz', '.x3d', '.x3db', '.x3dv', '.xap', '.xar', '.xbap',
    '.xbd', '.xbm', '.xcf', '.xdf', '.xdm', '.xdp', '.xdssc', '.xdw', '.xenc', '.xer', '.xfdf',
    '.xfdl', '.xht', '.xhtml', '.xif', '.xlam', '.xlb', '.xls', '.xlsb', '.xlsm', '.xlsx', '.xlt',
    '.xltm', '.xltx', '.xml', '.xo', '.xop', '.xpi', '.xpm', '.xpr', '.xps', '.xpw', '.xsd',
    '.xsl', '.xslt', '.xsm', '.xspf', '.xtel', '.xul', '.xwd', '.xyz', '.yang', '.yin', '.zaz',
    '.zip', '.zir', '.zmm', '.zmt',
]

# This system's documents: the drawing document, its two templates (the
# current container form and the older RIFF form), the exchange metafile,
# the paint image and the pattern.
OWN_ROWS = {
    '.kvd': 'application/x-vnd.brimo.zcf.plotra.document+zip',
    '.kvt': 'application/x-vnd.brimo.zcf.plotra.template+zip',
    '.kvs': 'application/x-vnd.brimo.plotra.template',
    '.jmv': 'application/x-vnd.brimo.jmv',
    '.qpx': 'application/x-vnd.brimo.qpx',
    '.pat': 'application/x-vnd.brimo.zcf.pattern+zip',
}

# Rows whose value is fixed here, whatever the system list says.
FIXED = {
    '.txt': 'text/plain',
    '.%': 'application/x-trash',
    '.dae': 'model/vnd.collada+xml',
    '.dat': 'application/x-ns-proxy-autoconfig',
    '.jpeg': 'image/jpeg',
    '.pdf': 'application/pdf',
    '.tiff': 'image/tiff',
    '.xml': 'application/xml',
    '.zip': 'application/zip',
}

# Extensions Debian's list does not name.
FALLBACK = {
    '.323': 'text/h323',
    '.3g2': 'video/3gpp2',
    '.3gp': 'video/3gpp',
    '.aab': 'application/x-authorware-bin',
    '.aam': 'application/x-authorware-map',
    '.aas': 'application/x-authorware-seg',
    '.ace': 'application/x-ace-compressed',
    '.adp': 'audio/adpcm',
    '.air': 'application/vnd.adobe.air-application-installer-package+zip',
    '.application': 'application/x-ms-application',
    '.asx': 'video/x-ms-asf',
    '.aw': 'application/applixware',
    '.azw': 'application/vnd.amazon.ebook',
    '.bdf': 'application/vnd.syncml.dm+wbxml',
    '.bz': 'application/x-bzip',
    '.bz2': 'application/x-bzip2',
    '.chat': 'application/x-chat',
    '.clp': 'application/x-msclip',
    '.config': 'application/xml',
    '.crd': 'application/x-mscardfile',
    '.dcurl': 'text/vnd.curl.dcurl',
    '.der': 'application/x-x509-ca-cert',
    '.dra': 'audio/vnd.dra',
    '.dtb': 'application/x-dtbook+xml',
    '.f': 'text/x-fortran',
    '.f4v': 'video/x-f4v',
    '.fh': 'image/x-freehand',
    '.fnc': 'application/vnd.frogans.fnc',
    '.g3': 'image/g3fax',
    '.gmx': 'application/vnd.gmx',
    '.h261': 'video/h261',
    '.h263': 'video/h263',
    '.h264': 'video/h264',
    '.hlp': 'application/winhlp',
    '.ice': 'x-conference/x-cooltalk',
    '.icz': 'text/calendar',
    '.jpgv': 'video/jpeg',
    '.kar': 'audio/midi',
    '.ltf': 'application/vnd.frogans.ltf',
    '.mathml': 'application/mathml+xml',
    '.mcurl': 'text/vnd.curl.mcurl',
    '.midi': 'audio/midi',
    '.mny': 'application/x-msmoney',
    '.mp4a': 'audio/mp4',
    '.mscml': 'application/mediaservercontrol+xml',
    '.musicxml': 'application/vnd.recordare.musicxml+xml',
    '.ncx': 'application/x-dtbncx+xml',
    '.n-gage': 'application/vnd.nokia.n-gage.symbian.install',
    '.npx': 'image/vnd.net-fpx',
    '.obd': 'application/x-msbinder',
    '.odft': 'application/vnd.oasis.opendocument.formula-template',
    '.onetoc': 'application/onenote',
    '.osfpvg': 'application/vnd.yamaha.openscoreformat.osfpvg+xml',
    '.p7b': 'application/x-pkcs7-certificates',
    '.pclxl': 'application/vnd.hp-pclxl',
    '.pcurl': 'application/vnd.curl.pcurl',
    '.php': 'application/x-httpd-php',
    '.php3': 'application/x-httpd-php3',
    '.php3p': 'application/x-httpd-php3-preprocessed',
    '.php4': 'application/x-httpd-php4',
    '.php5': 'application/x-httpd-php5',
    '.phps': 'application/x-httpd-php-source',
    '.pht': 'application/x-httpd-php',
    '.phtml': 'application/x-httpd-php',
    '.pic': 'image/x-pict',
    '.psf': 'application/x-font-linux-psf',
    '.res': 'application/x-dtbresource+xml',
    '.rhtml': 'application/x-httpd-eruby',
    '.rmp': 'audio/x-pn-realaudio-plugin',
    '.rsd': 'application/rsd+xml',
    '.rtx': 'text/richtext',
    '.s': 'text/x-asm',
    '.sbml': 'application/sbml+xml',
    '.sct': 'text/scriptlet',
    '.scurl': 'text/vnd.curl.scurl',
    '.setpay': 'application/set-payment-initiation',
    '.setreg': 'application/set-registration-initiation',
    '.sisx': 'application/vnd.symbian.install',
    '.snf': 'application/x-font-snf',
    '.sub': 'image/vnd.dvb.subtitle',
    '.svd': 'application/vnd.svd',
    '.swfl': 'application/x-shockwave-flash',
    '.tfm': 'application/x-tex-tfm',
    '.trm': 'application/x-msterminal',
    '.uls': 'text/iuls',
    '.uu': 'text/x-uuencode',
    '.weba': 'audio/webm',
    '.wp5': 'application/wordperfect5.1',
    '.wri': 'application/x-mswrite',
    '.xap': 'application/x-silverlight-app',
    '.xbap': 'application/x-ms-xbap',
    '.xenc': 'application/xenc+xml',
    '.xlb': 'application/vnd.ms-excel',
    '.xsd': 'application/xml',
}


def read_system_list(path):
    types = {}
    with open(path, encoding='utf-8') as f:
        for line in f:
            fields = line.split('#', 1)[0].split()
            for ext in fields[1:]:
                types.setdefault('.' + ext.lower(), fields[0])
    return types


def sort_key(ext):
    # Ascending as the list stands: case and hyphens do not count, and other
    # symbols come before digits, digits before letters.
    key = []
    for c in ext[1:].lower():
        if c == '-':
            continue
        key.append((2 if c.isalpha() else 1 if c.isdigit() else 0, c))
    return key


def main():
    system = read_system_list(MIME_TYPES)
    for before, after in zip(EXTENSIONS[1:], EXTENSIONS[2:]):
        if sort_key(before) > sort_key(after):
            sys.exit('out of order: %s before %s' % (before, after))
    rows = []
    for ext in EXTENSIONS:
        if ext in FIXED:
            rows.append((ext, FIXED[ext]))
        elif ext in system:
            rows.append((ext, system[ext]))
        elif ext in FALLBACK:
            rows.append((ext, FALLBACK[ext]))
        else:
            sys.exit('no media type for ' + ext)
    for ext, mime in sorted(OWN_ROWS.items()):
        if any(e == ext for e, _ in rows):
            rows = [(e, mime if e == ext else m) for e, m in rows]
            continue
        at = 1  # behind the default row
        while at < len(rows) and sort_key(rows[at][0]) < sort_key(ext):
            at += 1
        rows.insert(at, (ext, mime))

    out = [
        '// Generated by scripts/gen_mime_table.py; edit the script, not this file.',
        '// The constant table of file name extensions and media types: the',
        '// default row ".txt" first, then ascending by extension.',
        '#include "utils/MimeTypes.h"',
        '',
        'namespace BrmUtils {',
        '',
        'const MimeTypeRow kMimeTypeRows[] = {',
    ]
    for ext, mime in rows:
        out.append('    {L"%s", L"%s"},' % (ext, mime))
    out += [
        '};',
        '',
        'const std::size_t kMimeTypeRowCount = sizeof(kMimeTypeRows) / sizeof(kMimeTypeRows[0]);',
        '',
        '}  // namespace BrmUtils',
        '',
    ]
    with open(OUTPUT, 'w', encoding='utf-8') as f:
        f.write('\n'.join(out))
    print('%d rows written to %s' % (len(rows), os.path.normpath(OUTPUT)))


if __name__ == '__main__':
    main()
